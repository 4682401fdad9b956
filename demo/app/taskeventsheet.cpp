#include "demo/app/taskeventsheet.h"

#include "demo/app/hostbrand.h"
#include "demo/app/hostevents.h"

#include <QAbstractItemView>
#include <QButtonGroup>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace ravelin {

namespace {

// What each kind reads as on its button.
QString kindLabel(const QString &kind)
{
    if (kind == QLatin1String("task-assigned"))
        return QStringLiteral("Assigned");
    if (kind == QLatin1String("task-unassigned"))
        return QStringLiteral("Unassigned");
    return QStringLiteral("Deleted");
}

QLabel *caption(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text.toUpper(), parent);
    label->setFont(hostbrand::font(11, QFont::Bold));
    label->setStyleSheet(QStringLiteral("color: %1; letter-spacing: 1px;").arg(hostbrand::secondaryText().name()));
    return label;
}

} // namespace

TaskEventSheet::TaskEventSheet(QWidget *window)
    : QWidget(window)
{
    setObjectName(QStringLiteral("taskEventSheet"));
    window->installEventFilter(this);

    m_sheet = new QWidget(this);
    m_sheet->setObjectName(QStringLiteral("taskEventSheetCard"));
    m_sheet->setAttribute(Qt::WA_StyledBackground);
    const QString primary = hostbrand::primary().name();
    m_sheet->setStyleSheet(
        QStringLiteral(
            "QWidget#taskEventSheetCard { background: %1; border-top-left-radius: 20px; border-top-right-radius: 20px; "
            "}"
            "QComboBox { border: 1px solid %2; border-radius: 10px; padding: 8px 12px; color: %3; background: white; }"
            "QComboBox::drop-down { border: none; width: 26px; }"
            "QPushButton#kind { border: 1px solid %2; background: white; color: %3; padding: 8px 0; }"
            "QPushButton#kind:checked { background: %4; border-color: %4; color: white; }"
            "QPushButton#kindFirst { border: 1px solid %2; border-top-left-radius: 10px; border-bottom-left-radius: "
            "10px;"
            " background: white; color: %3; padding: 8px 0; }"
            "QPushButton#kindFirst:checked { background: %4; border-color: %4; color: white; }"
            "QPushButton#kindLast { border: 1px solid %2; border-top-right-radius: 10px; border-bottom-right-radius: "
            "10px;"
            " background: white; color: %3; padding: 8px 0; }"
            "QPushButton#kindLast:checked { background: %4; border-color: %4; color: white; }")
            .arg(hostbrand::surface().name(), hostbrand::hairline().name(), hostbrand::text().name(), primary));

    auto *column = new QVBoxLayout(m_sheet);
    column->setContentsMargins(20, 12, 20, 22);
    column->setSpacing(0);

    auto *grip = new QWidget(m_sheet);
    grip->setFixedSize(40, 5);
    grip->setStyleSheet(QStringLiteral("background: %1; border-radius: 2px;").arg(hostbrand::hairline().name()));
    column->addWidget(grip, 0, Qt::AlignHCenter);
    column->addSpacing(14);

    auto *title = new QLabel(QStringLiteral("Post a task event"), m_sheet);
    title->setFont(hostbrand::font(20, QFont::DemiBold));
    title->setStyleSheet(QStringLiteral("color: %1;").arg(hostbrand::text().name()));
    column->addWidget(title);
    column->addSpacing(4);
    auto *subtitle = new QLabel(
        QStringLiteral("Tell the task client what happened to a task, as the host's back office would."), m_sheet);
    subtitle->setWordWrap(true);
    subtitle->setFont(hostbrand::font(13));
    subtitle->setStyleSheet(QStringLiteral("color: %1;").arg(hostbrand::secondaryText().name()));
    column->addWidget(subtitle);
    column->addSpacing(16);

    column->addWidget(caption(QStringLiteral("Task"), m_sheet));
    column->addSpacing(6);
    m_taskBox = new QComboBox(m_sheet);
    m_taskBox->setObjectName(QStringLiteral("taskEventTask"));
    m_taskBox->setFont(hostbrand::font(14));
    m_taskBox->setMinimumHeight(42);
    m_taskBox->view()->setTextElideMode(Qt::ElideRight);
    column->addWidget(m_taskBox);
    column->addSpacing(14);

    column->addWidget(caption(QStringLiteral("What happened"), m_sheet));
    column->addSpacing(6);
    auto *kinds = new QHBoxLayout;
    kinds->setSpacing(0);
    m_kinds = new QButtonGroup(this);
    m_kinds->setExclusive(true);
    const QStringList all = hostevents::taskEventKinds();
    for (qsizetype i = 0; i < all.size(); ++i) {
        auto *button = new QPushButton(kindLabel(all.at(i)), m_sheet);
        button->setObjectName(i == 0 ? QStringLiteral("kindFirst")
                                     : (i == all.size() - 1 ? QStringLiteral("kindLast") : QStringLiteral("kind")));
        button->setProperty("kind", all.at(i));
        button->setToolTip(all.at(i));
        button->setCheckable(true);
        button->setCursor(Qt::PointingHandCursor);
        button->setFont(hostbrand::font(14, QFont::DemiBold));
        m_kinds->addButton(button);
        kinds->addWidget(button, 1);
    }
    m_kinds->buttons().constFirst()->setChecked(true);
    column->addLayout(kinds);
    column->addSpacing(22);

    auto *actions = new QHBoxLayout;
    actions->setSpacing(10);
    auto *cancel = new QPushButton(QStringLiteral("Cancel"), m_sheet);
    cancel->setCursor(Qt::PointingHandCursor);
    cancel->setMinimumHeight(46);
    cancel->setFont(hostbrand::font(15, QFont::DemiBold));
    cancel->setStyleSheet(
        QStringLiteral("QPushButton { color: %1; background: %2; border: none; border-radius: 12px; }")
            .arg(hostbrand::text().name(), hostbrand::background().name()));
    connect(cancel, &QPushButton::clicked, this, &TaskEventSheet::dismiss);
    m_post = new QPushButton(QStringLiteral("Post event"), m_sheet);
    m_post->setObjectName(QStringLiteral("taskEventPost"));
    m_post->setCursor(Qt::PointingHandCursor);
    m_post->setMinimumHeight(46);
    m_post->setFont(hostbrand::font(15, QFont::DemiBold));
    m_post->setStyleSheet(
        QStringLiteral("QPushButton { color: white; background: %1; border: none; border-radius: 12px; }"
                       "QPushButton:disabled { background: #9CC3BF; }")
            .arg(primary));
    connect(m_post, &QPushButton::clicked, this, &TaskEventSheet::post);
    actions->addWidget(cancel, 1);
    actions->addWidget(m_post, 2);
    column->addLayout(actions);

    hide();
}

void TaskEventSheet::setTasks(const QList<HostSetup::TaskChoice> &tasks)
{
    const auto previous = selectedTask();
    m_tasks = tasks;
    m_taskBox->clear();
    for (const HostSetup::TaskChoice &task : tasks)
        m_taskBox->addItem(QStringLiteral("#%1  %2").arg(task.id).arg(task.name), task.id);
    if (previous)
        selectTask(previous->id);
    m_post->setEnabled(!tasks.isEmpty());
}

bool TaskEventSheet::selectTask(qint64 taskId)
{
    const int index = m_taskBox->findData(taskId);
    if (index < 0)
        return false;
    m_taskBox->setCurrentIndex(index);
    return true;
}

std::optional<HostSetup::TaskChoice> TaskEventSheet::selectedTask() const
{
    const int index = m_taskBox->currentIndex();
    if (index < 0 || index >= m_tasks.size())
        return std::nullopt;
    return m_tasks.at(index);
}

bool TaskEventSheet::selectKind(const QString &kind)
{
    for (QAbstractButton *button : m_kinds->buttons()) {
        if (button->property("kind").toString() == kind) {
            button->setChecked(true);
            return true;
        }
    }
    return false;
}

QString TaskEventSheet::selectedKind() const
{
    QAbstractButton *checked = m_kinds->checkedButton();
    return checked ? checked->property("kind").toString() : QString();
}

void TaskEventSheet::open()
{
    layoutSheet();
    show();
    raise();
}

void TaskEventSheet::dismiss()
{
    hide();
}

void TaskEventSheet::post()
{
    const auto task = selectedTask();
    if (!task)
        return;
    const QString kind = selectedKind();
    dismiss();
    emit postRequested(task->id, task->name, kind);
}

void TaskEventSheet::layoutSheet()
{
    if (!parentWidget())
        return;
    setGeometry(parentWidget()->rect());
    const int sheetHeight = std::min(m_sheet->sizeHint().height(), height());
    m_sheet->setGeometry(0, height() - sheetHeight, width(), sheetHeight);
}

bool TaskEventSheet::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        layoutSheet();
    return QWidget::eventFilter(watched, event);
}

void TaskEventSheet::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor(6, 24, 23, 110));
}

void TaskEventSheet::mousePressEvent(QMouseEvent *event)
{
    if (!m_sheet->geometry().contains(event->position().toPoint()))
        dismiss();
    event->accept();
}

} // namespace ravelin
