#include "host/navigationbar.h"

#include "resources/namedcolors.h"
#include "resources/namedimages.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QToolButton>

namespace ravelin {

namespace {

QColor barTextColor()
{
    return NamedColors::color(ColorNames::navigationBarText, QColor(Qt::white));
}

} // namespace

NavigationBar::NavigationBar(QWidget *parent)
    : QWidget(parent)
    , m_barColor(NamedColors::color(ColorNames::navigationBar, QColor(0x1f, 0x4e, 0x79)))
{
    setObjectName(QStringLiteral("navigationBar"));
    setFixedHeight(barHeight);
    setAttribute(Qt::WA_OpaquePaintEvent);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(6, 0, 6, 0);
    row->setSpacing(0);

    m_backButton = new QToolButton(this);
    m_backButton->setObjectName(QStringLiteral("backButton"));
    m_backButton->setAccessibleName(QStringLiteral("Back"));
    m_backButton->setIcon(NamedImages::icon(ImageNames::back, barTextColor()));
    m_backButton->setIconSize(QSize(22, 22));
    m_backButton->setText(QStringLiteral("Back"));
    m_backButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_backButton->setAutoRaise(true);
    m_backButton->setCursor(Qt::PointingHandCursor);
    m_backButton->setVisible(false);
    connect(m_backButton, &QToolButton::clicked, this, &NavigationBar::backRequested);

    m_left = new QHBoxLayout;
    m_left->setSpacing(2);
    m_right = new QHBoxLayout;
    m_right->setSpacing(2);

    m_title = new QLabel(this);
    m_title->setObjectName(QStringLiteral("navigationTitle"));
    m_title->setAlignment(Qt::AlignCenter);
    QFont titleFont = m_title->font();
    titleFont.setPointSizeF(13.5);
    titleFont.setWeight(QFont::DemiBold);
    m_title->setFont(titleFont);

    row->addWidget(m_backButton);
    row->addLayout(m_left);
    row->addWidget(m_title, 1);
    row->addLayout(m_right);

    const QString text = barTextColor().name();
    setStyleSheet(QStringLiteral("QLabel#navigationTitle { color: %1; }"
                                 "QToolButton { color: %1; border: none; padding: 6px; font-size: 11pt; }"
                                 "QToolButton:pressed { background: rgba(255,255,255,40); border-radius: 8px; }")
                      .arg(text));
}

QString NavigationBar::title() const
{
    return m_title->text();
}

void NavigationBar::setTitle(const QString &title)
{
    m_title->setText(title);
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
        button->setIconSize(QSize(22, 22));
        button->setToolButtonStyle(action->icon().isNull() ? Qt::ToolButtonTextOnly : Qt::ToolButtonIconOnly);
        button->setAutoRaise(true);
        button->setCursor(Qt::PointingHandCursor);
        layout->addWidget(button);
    }
}

void NavigationBar::setRightActions(const QList<QAction *> &actions)
{
    fill(m_right, actions);
}

void NavigationBar::setLeftActions(const QList<QAction *> &actions)
{
    fill(m_left, actions);
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
