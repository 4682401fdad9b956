#include "comments/custominputbar.h"

#include "api/debuglog.h"
#include "comments/custominputbardelegate.h"
#include "host/imagepicker.h"
#include "host/ravelinnavvc.h"
#include "host/screen.h"
#include "resources/namedcolors.h"
#include "resources/namedimages.h"
#include "views/focusring.h"
#include "views/textscale.h"
#include "views/touchtarget.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBoundaryFinder>
#include <QToolButton>
#include <QTransform>
#include <QVBoxLayout>

#include <algorithm>

namespace ravelin {

namespace {

constexpr int maxLines = 5;
constexpr int thumbnailSide = 64;

QColor lightGray()
{
    return QColor(0xAA, 0xAA, 0xAA);
}

QColor systemBlue()
{
    return QColor(0x00, 0x7A, 0xFF);
}

// The paper plane, in a colour, turned by an angle.
QIcon sendIcon(const QColor &color, qreal radians)
{
    QIcon icon;
    for (const qreal ratio : {1.0, 2.0, 3.0}) {
        const QSize size(52, 30);
        QPixmap canvas(size * ratio);
        canvas.setDevicePixelRatio(ratio);
        canvas.fill(Qt::transparent);
        const QPixmap plane = NamedImages::pixmap(ImageNames::paperplane, QSize(24, 24), color, ratio);
        QPainter painter(&canvas);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.translate(size.width() / 2.0, size.height() / 2.0);
        painter.rotate(qRadiansToDegrees(radians));
        painter.drawPixmap(QPointF(-12, -12), plane);
        painter.end();
        icon.addPixmap(canvas);
    }
    return icon;
}

} // namespace

CustomInputBar::CustomInputBar(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("customInputBar"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    const QColor background = NamedColors::color(ColorNames::viewBackground, Qt::white);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(8, 8, 8, 10);
    column->setSpacing(6);

    m_attachmentStrip = new QWidget(this);
    m_attachmentStrip->setObjectName(QStringLiteral("attachmentStrip"));
    m_attachmentRow = new QHBoxLayout(m_attachmentStrip);
    m_attachmentRow->setContentsMargins(4, 0, 4, 0);
    m_attachmentRow->setSpacing(8);
    m_attachmentStrip->hide();
    column->addWidget(m_attachmentStrip);

    auto *row = new QHBoxLayout;
    row->setSpacing(5);
    m_attachmentButton = new QToolButton(this);
    m_attachmentButton->setObjectName(QStringLiteral("addAttachmentBtn"));
    m_attachmentButton->setAccessibleName(tr("Add Picture"));
    m_attachmentButton->setIcon(NamedImages::icon(ImageNames::paperclip, lightGray()));
    m_attachmentButton->setIconSize(QSize(25, 25));
    m_attachmentButton->setFixedSize(TouchTarget::minimumSide, TouchTarget::minimumSide);
    m_attachmentButton->setAutoRaise(true);
    m_attachmentButton->setCursor(Qt::PointingHandCursor);
    connect(m_attachmentButton, &QToolButton::clicked, this, &CustomInputBar::pickPicture);
    row->addWidget(m_attachmentButton, 0, Qt::AlignBottom);

    m_textView = new QPlainTextEdit(this);
    m_textView->setObjectName(QStringLiteral("inputTextView"));
    m_textView->setAccessibleName(tr("Comment"));
    m_textView->setPlaceholderText(placeholder());
    m_textView->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_textView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_textView->setTabChangesFocus(true);
    QPalette palette = m_textView->palette();
    palette.setColor(QPalette::Base, background);
    palette.setColor(QPalette::Text, NamedColors::color(ColorNames::accent, systemBlue()));
    palette.setColor(QPalette::PlaceholderText, lightGray());
    m_textView->setPalette(palette);
    m_textView->setStyleSheet(QStringLiteral("QPlainTextEdit { border: 1px solid %1; border-radius: 18px;"
                                             " padding: 4px 10px; %2 }"
                                             "QPlainTextEdit:focus { border: 2px solid %3; }")
                                  .arg(NamedColors::color(ColorNames::separator, Qt::lightGray).name(),
                                       TextScale::styleSize(15), FocusRing::color().name()));
    connect(m_textView, &QPlainTextEdit::textChanged, this, &CustomInputBar::textChanged);
    row->addWidget(m_textView, 1);

    m_sendButton = new QToolButton(this);
    m_sendButton->setObjectName(QStringLiteral("sendCommentBtn"));
    m_sendButton->setAccessibleName(tr("Send"));
    m_sendButton->setIconSize(QSize(52, 30));
    m_sendButton->setFixedSize(52, TouchTarget::minimumSide);
    m_sendButton->setAutoRaise(true);
    m_sendButton->setCursor(Qt::PointingHandCursor);
    connect(m_sendButton, &QToolButton::clicked, this, &CustomInputBar::didPressSend);
    row->addWidget(m_sendButton, 0, Qt::AlignBottom);
    column->addLayout(row);

    const QString buttonSheet = QStringLiteral("QToolButton { border: 2px solid transparent; border-radius: 8px; }"
                                               "QToolButton:focus { border-color: %1; }")
                                    .arg(FocusRing::color().name());
    m_attachmentButton->setStyleSheet(buttonSheet);
    m_sendButton->setStyleSheet(buttonSheet);

    fitTextView();
    updateSendButton();
}

qsizetype CustomInputBar::characterCount(const QString &text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (finder.toNextBoundary() != -1)
        ++count;
    return count;
}

void CustomInputBar::textChanged()
{
    if (m_restoring)
        return;
    const QString text = m_textView->toPlainText();
    if (characterCount(text) > m_maxNoCharacters) {
        // Over the limit: the edit is refused whole, as if it had not happened.
        const int position = std::min<int>(m_textView->textCursor().position(), int(m_acceptedText.size()));
        m_restoring = true;
        m_textView->setPlainText(m_acceptedText);
        QTextCursor cursor = m_textView->textCursor();
        cursor.setPosition(std::min<int>(position, int(m_acceptedText.size())));
        m_textView->setTextCursor(cursor);
        m_restoring = false;
        return;
    }
    m_acceptedText = text;
    fitTextView();
    updateSendButton();
}

void CustomInputBar::fitTextView()
{
    // One line to five, then the text scrolls inside.
    const QFontMetrics metrics(m_textView->font());
    const int lines = std::clamp(int(m_textView->document()->size().height()), 1, maxLines);
    const int height = lines * metrics.lineSpacing() + 18;
    if (m_textView->height() != height) {
        m_textView->setFixedHeight(std::max({TextScale::scaled(36), TouchTarget::minimumSide, height}));
        updateGeometry();
    }
}

void CustomInputBar::updateSendButton()
{
    const bool enabled = !m_textView->toPlainText().isEmpty() || !m_attachments.isEmpty();
    m_sendButton->setEnabled(enabled);
    if (m_sendActive == enabled && !m_sendButton->icon().isNull())
        return;
    m_sendActive = enabled;
    m_sendButton->setIcon(enabled ? sendIcon(systemBlue(), activeRotation) : sendIcon(lightGray(), 0));
}

void CustomInputBar::attach(const QImage &picture)
{
    if (picture.isNull()) {
        debugLog(lcComments, QStringLiteral("Couldn't handle picking images"));
        return;
    }
    m_attachments.append(picture);
    rebuildAttachmentStrip();
    updateSendButton();
}

void CustomInputBar::pickPicture()
{
    Screen *screen = m_presentingVC;
    RavelinNavVC *host = screen ? screen->navigationHost() : nullptr;
    if (!host)
        return;
    // The picker may hand back several pictures: all are attached, the first is sent.
    host->imagePicker()->pickImages(screen, [self = QPointer<CustomInputBar>(this)](const QList<QImage> &pictures) {
        if (!self)
            return;
        for (const QImage &picture : pictures)
            self->attach(picture);
    });
}

void CustomInputBar::rebuildAttachmentStrip()
{
    while (QLayoutItem *item = m_attachmentRow->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    const qreal ratio = devicePixelRatioF();
    for (qsizetype i = 0; i < m_attachments.size(); ++i) {
        auto *thumbnail = new QLabel(m_attachmentStrip);
        thumbnail->setObjectName(QStringLiteral("attachment"));
        thumbnail->setAccessibleName(tr("Picture %1").arg(i + 1));
        QPixmap pixmap = QPixmap::fromImage(m_attachments.at(i).scaled(
            QSize(thumbnailSide, thumbnailSide) * ratio, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation));
        pixmap.setDevicePixelRatio(ratio);
        thumbnail->setPixmap(pixmap);
        thumbnail->setFixedSize(thumbnailSide, thumbnailSide);
        thumbnail->setScaledContents(false);
        thumbnail->setStyleSheet(QStringLiteral("QLabel { border-radius: 8px; }"));
        m_attachmentRow->addWidget(thumbnail);
    }
    m_attachmentRow->addStretch(1);
    m_attachmentStrip->setVisible(!m_attachments.isEmpty());
    updateGeometry();
}

void CustomInputBar::invalidatePlugins()
{
    m_attachments.clear();
    rebuildAttachmentStrip();
    updateSendButton();
}

void CustomInputBar::setPlaceholderText(const QString &text)
{
    m_textView->setPlaceholderText(text);
}

void CustomInputBar::didPressSend()
{
    setPlaceholderText(sendingPlaceholder());
    const QString text = m_textView->toPlainText();
    const std::optional<QImage> picture = m_attachments.isEmpty() ? std::nullopt : std::optional(m_attachments.first());
    if (CustomInputBarDelegate *delegate = m_customDelegate.get())
        delegate->customInputBarDidPressSend(text, picture, this);
}

void CustomInputBar::reset()
{
    m_restoring = true;
    m_textView->clear();
    m_restoring = false;
    m_acceptedText.clear();
    invalidatePlugins();
    fitTextView();
    updateSendButton();
    setPlaceholderText(placeholder());
}

QSize CustomInputBar::sizeHint() const
{
    return {QWidget::sizeHint().width(), layout()->sizeHint().height()};
}

void CustomInputBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), NamedColors::color(ColorNames::viewBackground, Qt::white));
    painter.fillRect(QRect(0, 0, width(), 1), NamedColors::color(ColorNames::separator, Qt::lightGray));
}

} // namespace ravelin
