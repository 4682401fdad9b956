#pragma once

#include "host/guardeddelegate.h"

#include <QImage>
#include <QList>
#include <QPointer>
#include <QWidget>

class QHBoxLayout;
class QPlainTextEdit;
class QToolButton;

namespace ravelin {

class CustomInputBarDelegate;
class Screen;

// The bar at the bottom of the comments screen: a text view that grows with
// its text (at most 512 user-perceived characters: an emoji or a letter with
// its accents counts one, and an edit that would go over is refused whole), a
// paper-clip button that picks pictures through the library's image picker into
// a strip of attachments above the text, and a send button, active while there
// is text or a picture.
class CustomInputBar : public QWidget
{
    Q_OBJECT

public:
    [[nodiscard]] static QString placeholder() { return tr("Leave a comment ..."); }
    [[nodiscard]] static QString sendingPlaceholder() { return tr("Sending..."); }
    // The send button's turn while active (a constant of the design, kept as it is).
    static constexpr qreal activeRotation = -11.858407346410207;
    static constexpr qsizetype defaultMaxNoCharacters = 512;

    explicit CustomInputBar(QWidget *parent = nullptr);

    [[nodiscard]] qsizetype maxNoCharacters() const { return m_maxNoCharacters; }
    void setMaxNoCharacters(qsizetype limit) { m_maxNoCharacters = limit; }
    [[nodiscard]] Screen *presentingVC() const { return m_presentingVC; }
    void setPresentingVC(Screen *screen) { m_presentingVC = screen; }
    [[nodiscard]] CustomInputBarDelegate *customDelegate() const { return m_customDelegate.get(); }
    void setCustomDelegate(CustomInputBarDelegate *delegate) { m_customDelegate = delegate; }

    [[nodiscard]] QPlainTextEdit *inputTextView() const { return m_textView; }
    [[nodiscard]] QToolButton *attachmentButton() const { return m_attachmentButton; }
    [[nodiscard]] QToolButton *sendButton() const { return m_sendButton; }
    [[nodiscard]] const QList<QImage> &attachments() const { return m_attachments; }
    // Whether the send button shows its active look (blue and turned).
    [[nodiscard]] bool sendButtonActive() const { return m_sendActive; }

    // User-perceived characters (grapheme clusters) in a text.
    [[nodiscard]] static qsizetype characterCount(const QString &text);

    // Adds a picked picture to the attachments; a picture that is not one is
    // refused with a debug line.
    void attach(const QImage &picture);
    // Picks pictures (one or several) from the presenting screen.
    void pickPicture();
    // The send action: "Sending..." shows and the delegate gets the text and the first picture.
    void didPressSend();
    // After a post: the text, the attachments and the sending state go.
    void reset();
    // Removes the attachments.
    void invalidatePlugins();
    void setPlaceholderText(const QString &text);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void textChanged();
    void updateSendButton();
    void rebuildAttachmentStrip();
    void fitTextView();

    qsizetype m_maxNoCharacters = defaultMaxNoCharacters;
    QPointer<Screen> m_presentingVC;
    GuardedDelegate<CustomInputBarDelegate> m_customDelegate;
    QWidget *m_attachmentStrip = nullptr;
    QHBoxLayout *m_attachmentRow = nullptr;
    QPlainTextEdit *m_textView = nullptr;
    QToolButton *m_attachmentButton = nullptr;
    QToolButton *m_sendButton = nullptr;
    QList<QImage> m_attachments;
    QString m_acceptedText;
    bool m_sendActive = false;
    bool m_restoring = false;
};

} // namespace ravelin
