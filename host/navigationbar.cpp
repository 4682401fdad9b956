#include "host/navigationbar.h"

#include "resources/namedcolors.h"
#include "resources/namedimages.h"
#include "views/focuschain.h"
#include "views/focusring.h"
#include "views/textscale.h"
#include "views/touchtarget.h"

#include <QAction>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QToolButton>
#include <QVBoxLayout>

namespace ravelin {

namespace {

QColor barTextColor()
{
    return NamedColors::color(ColorNames::navigationBarText, QColor(Qt::white));
}

} // namespace

namespace {

// The title, cut short at its end with an ellipsis when the bar is too narrow
// for it (the beginning of a task's name tells most).
class TitleLabel : public QLabel
{
public:
    using QLabel::QLabel;

    [[nodiscard]] QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(contentsRect(), int(alignment()),
                         fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width()));
    }
};

} // namespace

NavigationBar::NavigationBar(QWidget *parent)
    : QWidget(parent)
    , m_barColor(NamedColors::color(ColorNames::navigationBar, QColor(0x1f, 0x4e, 0x79)))
{
    setObjectName(QStringLiteral("navigationBar"));
    setFixedHeight(preferredHeight());
    setAttribute(Qt::WA_OpaquePaintEvent);

    // The buttons and the title in one row; the prompt, when there is one, in a
    // band of its own under them, the whole width of the bar.
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto *row = new QHBoxLayout;
    row->setContentsMargins(6, 0, 6, 0);
    row->setSpacing(0);

    m_backButton = new QToolButton(this);
    m_backButton->setObjectName(QStringLiteral("backButton"));
    m_backButton->setAccessibleName(tr("Back"));
    m_backButton->setIcon(NamedImages::icon(ImageNames::back, barTextColor()));
    m_backButton->setIconSize(QSize(22, 22));
    m_backButton->setText(tr("Back"));
    m_backButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_backButton->setAutoRaise(true);
    m_backButton->setCursor(Qt::PointingHandCursor);
    m_backButton->setMinimumSize(TouchTarget::minimumSide, TouchTarget::minimumSide);
    m_backButton->setVisible(false);
    connect(m_backButton, &QToolButton::clicked, this, &NavigationBar::backRequested);

    m_left = new QHBoxLayout;
    m_left->setSpacing(2);
    m_right = new QHBoxLayout;
    m_right->setSpacing(2);

    m_title = new TitleLabel(this);
    m_title->setObjectName(QStringLiteral("navigationTitle"));
    m_title->setAlignment(Qt::AlignCenter);
    QFont titleFont = m_title->font();
    titleFont.setPointSizeF(TextScale::scaled(13.5));
    titleFont.setWeight(QFont::DemiBold);
    m_title->setFont(titleFont);

    m_prompt = new TitleLabel(this);
    m_prompt->setObjectName(QStringLiteral("navigationPrompt"));
    m_prompt->setAlignment(Qt::AlignCenter);
    QFont promptFont = m_prompt->font();
    promptFont.setPointSizeF(TextScale::scaled(9.5));
    m_prompt->setFont(promptFont);
    m_prompt->setVisible(false);
    m_prompt->setFixedHeight(TextScale::scaled(promptHeight));

    m_syncButton = new QToolButton(this);
    m_syncButton->setObjectName(QStringLiteral("syncButton"));
    m_syncButton->setToolButtonStyle(Qt::ToolButtonTextOnly);
    m_syncButton->setAutoRaise(true);
    m_syncButton->setCursor(Qt::PointingHandCursor);
    m_syncButton->setMinimumSize(TouchTarget::minimumSide, TouchTarget::minimumSide);
    m_syncButton->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_syncButton->setVisible(false);
    connect(m_syncButton, &QToolButton::clicked, this, &NavigationBar::syncRequested);

    row->addWidget(m_backButton);
    row->addLayout(m_left);
    row->addWidget(m_title, 1);
    row->addWidget(m_syncButton);
    row->addLayout(m_right);
    column->addLayout(row, 1);
    column->addWidget(m_prompt);

    const QString text = barTextColor().name();
    setStyleSheet(QStringLiteral("QLabel#navigationTitle, QLabel#navigationPrompt { color: %1; }"
                                 "QLabel#navigationPrompt { background: rgba(0,0,0,60); }"
                                 "QToolButton#syncButton { background: rgba(255,255,255,40); }"
                                 "QToolButton { color: %1; border: 2px solid transparent; border-radius: 8px;"
                                 " padding: 4px; font-size: %2pt; }"
                                 "QToolButton:pressed { background: rgba(255,255,255,40); }"
                                 "QToolButton:focus { border-color: %3; }")
                      .arg(text)
                      .arg(TextScale::scaled(11.0))
                      .arg(FocusRing::onBar().name()));
    orderTabs();
}

int NavigationBar::preferredHeight()
{
    return TextScale::scaled(barHeight);
}

QString NavigationBar::title() const
{
    return m_title->text();
}

void NavigationBar::setTitle(const QString &title)
{
    m_title->setText(title);
}

QString NavigationBar::prompt() const
{
    return m_prompt->text();
}

void NavigationBar::setPrompt(const QString &prompt)
{
    if (m_prompt->text() == prompt)
        return;
    m_prompt->setText(prompt);
    m_prompt->setVisible(!prompt.isEmpty());
    setFixedHeight(preferredHeight() + (prompt.isEmpty() ? 0 : m_prompt->height()));
}

QString NavigationBar::syncText() const
{
    return m_syncButton->text();
}

void NavigationBar::setSyncText(const QString &text)
{
    if (m_syncButton->text() == text)
        return;
    m_syncButton->setText(text);
    m_syncButton->setAccessibleName(text);
    m_syncButton->setVisible(!text.isEmpty());
    orderTabs();
}

void NavigationBar::setBackVisible(bool visible)
{
    m_backButton->setVisible(visible);
}

bool NavigationBar::isBackVisible() const
{
    return !m_backButton->isHidden();
}

void NavigationBar::fill(QHBoxLayout *layout, const QList<QAction *> &actions)
{
    while (QLayoutItem *item = layout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    for (QAction *action : actions) {
        auto *button = new QToolButton(this);
        button->setDefaultAction(action);
        button->setObjectName(action->objectName());
        button->setAccessibleName(action->text());
        if (action->toolTip() != action->text())
            button->setAccessibleDescription(action->toolTip());
        button->setIconSize(QSize(22, 22));
        button->setToolButtonStyle(action->icon().isNull() ? Qt::ToolButtonTextOnly : Qt::ToolButtonIconOnly);
        button->setAutoRaise(true);
        button->setCursor(Qt::PointingHandCursor);
        button->setMinimumSize(TouchTarget::minimumSide, TouchTarget::minimumSide);
        layout->addWidget(button);
    }
}

void NavigationBar::setRightActions(const QList<QAction *> &actions)
{
    fill(m_right, actions);
    orderTabs();
}

void NavigationBar::setLeftActions(const QList<QAction *> &actions)
{
    fill(m_left, actions);
    orderTabs();
}

void NavigationBar::orderTabs()
{
    // Buttons made later would come last in the window; they follow the back
    // button instead, left to right.
    QList<QWidget *> order{m_backButton};
    for (QHBoxLayout *side : {m_left, m_right}) {
        if (side == m_right)
            order.append(m_syncButton);
        for (int i = 0; i < side->count(); ++i) {
            if (QWidget *button = side->itemAt(i)->widget())
                order.append(button);
        }
    }
    FocusChain::setOrder(order);
}

void NavigationBar::keyPressEvent(QKeyEvent *event)
{
    if (FocusChain::clickFocusedButton(this, event))
        return;
    QWidget::keyPressEvent(event);
}

void NavigationBar::setBarColor(const QColor &color)
{
    if (m_barColor == color)
        return;
    m_barColor = color;
    update();
}

void NavigationBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), m_barColor);
    painter.setPen(QColor(0, 0, 0, 40));
    painter.drawLine(rect().bottomLeft(), rect().bottomRight());
}

} // namespace ravelin
