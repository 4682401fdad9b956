#include "tasks/taskcard.h"

#include "resources/namedcolors.h"
#include "tasks/dashboardtexts.h"
#include "tasks/piechartview.h"
#include "tasks/taskcollectionviewcelldelegate.h"
#include "views/roundedview.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace ravelin {

namespace {

constexpr int chartSide = 54;
constexpr int nameLines = 2;

QColor named(const QString &name, const QColor &fallback)
{
    return NamedColors::color(name, fallback);
}

QString rgba(const QColor &color, qreal alpha)
{
    return QStringLiteral("rgba(%1,%2,%3,%4)")
        .arg(color.red())
        .arg(color.green())
        .arg(color.blue())
        .arg(QString::number(alpha, 'f', 2));
}

QColor priorityColor(TaskPriority priority)
{
    switch (priority) {
    case TaskPriority::highest: return named(ColorNames::customRed, Qt::red);
    case TaskPriority::high: return named(ColorNames::customOrange, QColor(255, 149, 0));
    case TaskPriority::medium: return named(ColorNames::customYellow, Qt::yellow);
    case TaskPriority::low: return named(ColorNames::customBlue, Qt::blue);
    case TaskPriority::all: break;
    }
    return named(ColorNames::customGray, Qt::gray);
}

// The name wrapped on at most two lines, the second one elided.
QString twoLineName(const QString &name, const QFont &font, int width)
{
    const QFontMetrics metrics(font);
    if (width <= 0 || metrics.horizontalAdvance(name) <= width)
        return name;
    // Break before the last word that still fits on the first line.
    int cut = 0;
    for (int i = 1; i <= name.size(); ++i) {
        if (metrics.horizontalAdvance(name.left(i)) > width)
            break;
        if (i == name.size() || name.at(i).isSpace())
            cut = i;
    }
    if (cut == 0) {
        // One long word: break it where the line is full.
        while (cut < name.size() && metrics.horizontalAdvance(name.left(cut + 1)) <= width)
            ++cut;
    }
    const QString first = name.left(cut).trimmed();
    const QString rest = name.mid(cut).trimmed();
    return first + QLatin1Char('\n') + metrics.elidedText(rest, Qt::ElideRight, width);
}

} // namespace

TaskCollectionViewCell::TaskCollectionViewCell(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(reuseIdentifier);
    setFixedSize(sizeHint());
    setCursor(Qt::PointingHandCursor);

    const QColor label = named(ColorNames::labelText, Qt::black);
    const QColor secondary = named(ColorNames::secondaryLabelText, Qt::darkGray);
    const QColor accent = named(ColorNames::accent, QColor(0, 122, 255));

    m_viewCell = new RoundedView(this);
    m_viewCell->setObjectName(QStringLiteral("viewCell"));
    m_viewCell->setCornerRadius(14);
    m_viewCell->setCustomBackgroundColor(named(ColorNames::viewBackground, Qt::white));
    m_viewCell->setGeometry(shadowMargin, shadowMargin, cardWidth, cardHeight);

    auto *column = new QVBoxLayout(m_viewCell);
    column->setContentsMargins(14, 12, 12, 12);
    column->setSpacing(0);

    auto *top = new QHBoxLayout;
    top->setSpacing(8);
    m_priorityLbl = new QLabel(m_viewCell);
    m_priorityLbl->setObjectName(QStringLiteral("priorityLbl"));
    m_priorityLbl->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    m_priorityLbl->setFixedHeight(20);
    m_priorityLbl->setAlignment(Qt::AlignCenter);
    top->addWidget(m_priorityLbl, 0, Qt::AlignTop);
    top->addStretch(1);
    m_progressView = new PieChartView(m_viewCell);
    m_progressView->setObjectName(QStringLiteral("progressView"));
    m_progressView->setFixedSize(chartSide, chartSide);
    top->addWidget(m_progressView, 0, Qt::AlignTop);
    column->addLayout(top);
    column->addSpacing(8);

    m_taskName = new QLabel(m_viewCell);
    QFont nameFont = m_taskName->font();
    nameFont.setPixelSize(15);
    nameFont.setWeight(QFont::DemiBold);
    m_taskName->setFont(nameFont);
    m_taskName->setWordWrap(false);
    m_taskName->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_taskName->setMaximumHeight(QFontMetrics(nameFont).lineSpacing() * nameLines + 2);
    m_taskName->setStyleSheet(QStringLiteral("color: %1;").arg(label.name()));
    // Screen readers read the name as static text.
    m_taskName->setTextInteractionFlags(Qt::NoTextInteraction);
    column->addWidget(m_taskName);

    m_categoryLbl = new QLabel(m_viewCell);
    m_categoryLbl->setObjectName(QStringLiteral("categoryLbl"));
    QFont categoryFont = m_categoryLbl->font();
    categoryFont.setPixelSize(12);
    m_categoryLbl->setFont(categoryFont);
    m_categoryLbl->setStyleSheet(QStringLiteral("color: %1;").arg(secondary.name()));
    column->addWidget(m_categoryLbl);
    column->addStretch(1);

    m_acknowledgeBtn = new QPushButton(QStringLiteral("Acknowledge"), m_viewCell);
    m_acknowledgeBtn->setObjectName(QStringLiteral("acknowledgeBtn"));
    m_acknowledgeBtn->setCursor(Qt::PointingHandCursor);
    m_acknowledgeBtn->setFixedHeight(28);
    m_acknowledgeBtn->setStyleSheet(
        QStringLiteral("QPushButton { background: %1; color: white; border: none; border-radius: 8px;"
                       " font-size: 12px; font-weight: 600; padding: 0 10px; }"
                       "QPushButton:pressed { background: %2; }")
            .arg(accent.name(), accent.darker(125).name()));
    connect(m_acknowledgeBtn, &QPushButton::clicked, this, &TaskCollectionViewCell::didTapAcknowledge);
    column->addSpacing(8);
    column->addWidget(m_acknowledgeBtn);
    m_acknowledgeBtn->hide();
}

QSize TaskCollectionViewCell::sizeHint() const
{
    return {cardWidth + 2 * shadowMargin, cardHeight + 2 * shadowMargin};
}

void TaskCollectionViewCell::configure(const TaskPtr &task)
{
    m_currentTask = task;
    if (!task)
        return;

    m_taskName->setObjectName(DashboardTexts::taskNameIdentifier(task->currentStatus));
    m_taskName->setAccessibleName(task->name);
    m_taskName->setToolTip(task->name);
    m_taskName->setText(twoLineName(task->name, m_taskName->font(), cardWidth - 26));

    m_categoryLbl->setText(task->taskCategory.name);
    m_categoryLbl->setAccessibleName(task->taskCategory.name);

    const QString priority = TaskPriorities::rawValue(task->priority);
    m_priorityLbl->setText(priority);
    m_priorityLbl->setAccessibleName(priority);
    applyPriorityLook(task->priority);

    m_acknowledgeBtn->setVisible(DashboardTexts::showsAcknowledgeButton(*task));

    const ChartData chart = DashboardTexts::itemsChart(task->progress);
    m_progressView->updateChartForItemsProgress(chart.names, chart.values, chart.colors,
                                                static_cast<int>(task->progress.total), false);
}

void TaskCollectionViewCell::didTapAcknowledge()
{
    if (!m_currentTask || !m_delegate)
        return;
    m_delegate->didTapAcknowledge(m_currentTask);
}

void TaskCollectionViewCell::applyPriorityLook(TaskPriority priority)
{
    const QColor color = priorityColor(priority);
    // Yellow and orange need a deeper tone to read on a light pill.
    const QColor text = color.darker(priority == TaskPriority::medium ? 165 : 125);
    m_priorityLbl->setStyleSheet(QStringLiteral("QLabel { background: %1; color: %2; border-radius: 10px;"
                                                " padding: 0 9px; font-size: 11px; font-weight: 600; }")
                                     .arg(rgba(color, 0.18), text.name()));
}

void TaskCollectionViewCell::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    m_pressed = true;
    m_pressPosition = event->position().toPoint();
    event->accept();
}

void TaskCollectionViewCell::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_pressed) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    m_pressed = false;
    event->accept();
    const QPoint position = event->position().toPoint();
    // A drag that scrolled the strip or the dashboard ends outside the card or
    // far from where it started: that is no tap.
    if (!m_viewCell->geometry().contains(position)
        || (position - m_pressPosition).manhattanLength() > tapSlop)
        return;
    emit tapped();
}

} // namespace ravelin
