#include "views/alertview.h"

#include "resources/namedcolors.h"
#include "views/accessiblefactory.h"
#include "views/focuschain.h"
#include "views/focusring.h"
#include "views/roundedview.h"
#include "views/textscale.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QEvent>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QMetaMethod>
#include <QPainter>
#include <QPointer>
#include <QPushButton>

#include <algorithm>

namespace ravelin {

namespace {

constexpr int windowMargin = 24;
constexpr int buttonHeight = 44;
constexpr qreal cardCornerRadius = 14.0;
const QColor dimColor(0, 0, 0, 102);

QFrame *hairline(QWidget *parent, Qt::Orientation orientation)
{
    auto *line = new QFrame(parent);
    line->setFrameShape(QFrame::NoFrame);
    line->setAutoFillBackground(true);
    QPalette palette = line->palette();
    palette.setColor(QPalette::Window, NamedColors::color(ColorNames::separator, QColor(0xDD, 0xE1, 0xE6)));
    line->setPalette(palette);
    if (orientation == Qt::Horizontal)
        line->setFixedHeight(1);
    else
        line->setFixedWidth(1);
    return line;
}

QColor actionColor(AlertActionStyle style)
{
    if (style == AlertActionStyle::destructive)
        return NamedColors::color(ColorNames::customRed, QColor(Qt::red));
    return NamedColors::color(ColorNames::accent, QColor(Qt::blue));
}

} // namespace

AlertView::AlertView(Alert alert, QWidget *window)
    : QWidget(window)
    , m_alert(std::move(alert))
{
    AccessibleFactory::describe(staticMetaObject, QAccessible::AlertMessage);
    setObjectName(objectNameForAlerts);
    // Heard as its title (or its message when it has none), then its message.
    setAccessibleName(m_alert.title.isEmpty() ? message() : m_alert.title);
    setAccessibleDescription(m_alert.title.isEmpty() ? QString() : message());
    if (window != nullptr)
        m_previousFocus = window->focusWidget();
    setAttribute(Qt::WA_NoMousePropagation);
    // It takes the focus when it shows; Tab then goes to its buttons.
    setFocusPolicy(Qt::ClickFocus);
    build();
    if (window != nullptr)
        window->installEventFilter(this);
    coverWindow();
}

QString AlertView::message() const
{
    return m_alert.attributedMessage ? m_alert.attributedMessage->plainText() : m_alert.message;
}

QStringList AlertView::actionTitles() const
{
    QStringList titles;
    for (const AlertAction &action : m_alert.actions)
        titles.append(action.title);
    return titles;
}

QPushButton *AlertView::actionButton(const QString &title) const
{
    for (QPushButton *button : m_buttons) {
        if (button->text() == title)
            return button;
    }
    return nullptr;
}

bool AlertView::triggerAction(const QString &title)
{
    if (m_dismissed)
        return false;
    for (const AlertAction &action : std::as_const(m_alert.actions)) {
        if (action.title != title)
            continue;
        const std::function<void()> handler = action.handler;
        dismiss();
        if (handler)
            handler();
        return true;
    }
    return false;
}

void AlertView::dismiss()
{
    if (m_dismissed)
        return;
    m_dismissed = true;
    if (parentWidget() != nullptr)
        parentWidget()->removeEventFilter(this);
    hide();
    // The screen under the alert gets its keyboard focus back.
    if (m_previousFocus && !m_previousFocus->isHidden())
        m_previousFocus->setFocus(Qt::OtherFocusReason);
    emit dismissed();
    deleteLater();
}

void AlertView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), dimColor);
}

bool AlertView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && (event->type() == QEvent::Resize || event->type() == QEvent::Show))
        coverWindow();
    return QWidget::eventFilter(watched, event);
}

void AlertView::keyPressEvent(QKeyEvent *event)
{
    if (FocusChain::clickFocusedButton(this, event))
        return;
    if (event->key() == Qt::Key_Escape) {
        // The answer that changes nothing: the cancel button, else a button
        // that only closes the alert; an alert without buttons just goes.
        if (m_alert.actions.isEmpty()) {
            // Whoever shows it decides what its going leads to.
            if (isSignalConnected(QMetaMethod::fromSignal(&AlertView::dismissalRequested)))
                emit dismissalRequested();
            else
                dismiss();
            return;
        }
        for (const AlertAction &action : std::as_const(m_alert.actions)) {
            if (action.style == AlertActionStyle::cancel) {
                triggerAction(action.title);
                return;
            }
        }
        for (const AlertAction &action : std::as_const(m_alert.actions)) {
            if (!action.handler) {
                triggerAction(action.title);
                return;
            }
        }
    }
    // Nothing reaches the screen under the alert.
    event->accept();
}

bool AlertView::focusNextPrevChild(bool next)
{
    // Tab goes round the alert's buttons only.
    FocusChain::moveWithin(this, next);
    return true;
}

void AlertView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    QAccessibleEvent shown(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&shown);
}

void AlertView::mousePressEvent(QMouseEvent *event)
{
    // Taps outside the card do nothing, as on a phone.
    event->accept();
}

void AlertView::build()
{
    const QColor labelColor = NamedColors::color(ColorNames::labelText, QColor(Qt::black));

    m_card = new RoundedView(this);
    m_card->setObjectName(QStringLiteral("alertCard"));
    m_card->setCornerRadius(cardCornerRadius);
    m_card->setBackgroundColor(NamedColors::color(ColorNames::viewBackground, QColor(Qt::white)));

    auto *cardLayout = new QVBoxLayout(m_card);
    cardLayout->setContentsMargins(0, 0, 0, 0);
    cardLayout->setSpacing(0);

    auto *texts = new QVBoxLayout;
    texts->setContentsMargins(18, 20, 18, 18);
    texts->setSpacing(6);

    auto *titleLabel = new QLabel(m_alert.title, m_card);
    titleLabel->setObjectName(QStringLiteral("alertTitle"));
    titleLabel->setTextFormat(Qt::PlainText);
    titleLabel->setWordWrap(true);
    titleLabel->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    QFont titleFont = titleLabel->font();
    titleFont.setPointSizeF(TextScale::scaled(12.5));
    titleFont.setWeight(QFont::DemiBold);
    titleLabel->setFont(titleFont);
    QPalette titlePalette = titleLabel->palette();
    titlePalette.setColor(QPalette::WindowText, labelColor);
    titleLabel->setPalette(titlePalette);
    titleLabel->setVisible(!m_alert.title.isEmpty());
    texts->addWidget(titleLabel);

    auto *messageLabel = new QLabel(m_card);
    messageLabel->setObjectName(QStringLiteral("alertMessage"));
    messageLabel->setWordWrap(true);
    messageLabel->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    QFont messageFont = messageLabel->font();
    messageFont.setPointSizeF(TextScale::scaled(10.0));
    messageLabel->setFont(messageFont);
    QPalette messagePalette = messageLabel->palette();
    messagePalette.setColor(QPalette::WindowText, labelColor);
    messageLabel->setPalette(messagePalette);
    if (m_alert.attributedMessage) {
        messageLabel->setTextFormat(Qt::RichText);
        messageLabel->setText(m_alert.attributedMessage->toHtml());
    } else {
        messageLabel->setTextFormat(Qt::PlainText);
        messageLabel->setText(m_alert.message);
    }
    messageLabel->setVisible(!message().trimmed().isEmpty());
    texts->addWidget(messageLabel);
    cardLayout->addLayout(texts);

    if (m_alert.actions.isEmpty())
        return;

    cardLayout->addWidget(hairline(m_card, Qt::Horizontal));
    const bool sideBySide = m_alert.actions.size() == 2;
    QBoxLayout *buttons = sideBySide ? static_cast<QBoxLayout *>(new QHBoxLayout) : new QVBoxLayout;
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->setSpacing(0);
    for (qsizetype index = 0; index < m_alert.actions.size(); ++index) {
        const AlertAction &action = m_alert.actions.at(index);
        if (index > 0)
            buttons->addWidget(hairline(m_card, sideBySide ? Qt::Vertical : Qt::Horizontal));
        auto *button = new QPushButton(action.title, m_card);
        button->setObjectName(QStringLiteral("alertAction"));
        button->setFocusPolicy(Qt::TabFocus);
        button->setFlat(true);
        button->setCursor(Qt::PointingHandCursor);
        button->setMinimumHeight(TextScale::scaled(buttonHeight));
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        QFont buttonFont = button->font();
        buttonFont.setPointSizeF(TextScale::scaled(12.0));
        buttonFont.setWeight(action.style == AlertActionStyle::cancel ? QFont::DemiBold : QFont::Normal);
        button->setFont(buttonFont);
        button->setStyleSheet(QStringLiteral("QPushButton { border: 2px solid transparent; border-radius: 10px;"
                                             " background: transparent; color: %1; }"
                                             "QPushButton:pressed { background: rgba(127, 127, 127, 40); }"
                                             "QPushButton:focus { border-color: %2; }")
                                  .arg(actionColor(action.style).name(), FocusRing::color().name()));
        const QString title = action.title;
        connect(button, &QPushButton::clicked, this, [this, title] { triggerAction(title); });
        buttons->addWidget(button);
        m_buttons.append(button);
    }
    cardLayout->addLayout(buttons);
}

void AlertView::coverWindow()
{
    QWidget *window = parentWidget();
    if (window == nullptr)
        return;
    setGeometry(window->rect());
    const int width = std::max(120, std::min(TextScale::scaled(cardWidth), window->width() - 2 * windowMargin));
    const int height = m_card->layout()->totalHeightForWidth(width);
    m_card->setGeometry((window->width() - width) / 2, (window->height() - height) / 2, width,
                        std::max(height, m_card->layout()->totalMinimumSize().height()));
    raise();
}

} // namespace ravelin
