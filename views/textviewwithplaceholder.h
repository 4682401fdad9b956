#pragma once

#include "views/textlimit.h"

#include <QColor>
#include <QPlainTextEdit>

namespace ravelin {

// A multi-line note field with a placeholder and a character limit. While it is
// empty and not being edited it shows placeholderText in placeholderTextColor;
// text() then reads "". Every edit obeys TextLimit with maxNoOfCharacters.
class TextViewWithPlaceholder : public QPlainTextEdit
{
    Q_OBJECT
    Q_PROPERTY(
        qint64 maxNoOfCharacters READ maxNoOfCharacters WRITE setMaxNoOfCharacters NOTIFY maxNoOfCharactersChanged)
    Q_PROPERTY(QString placeholderText READ placeholderText WRITE setPlaceholderText NOTIFY placeholderChanged)
    Q_PROPERTY(
        QColor placeholderTextColor READ placeholderTextColor WRITE setPlaceholderTextColor NOTIFY placeholderChanged)
    Q_PROPERTY(bool showingPlaceholder READ showingPlaceholder NOTIFY showingPlaceholderChanged)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textEdited)

public:
    static constexpr qint64 defaultMaxNoOfCharacters = 512;
    [[nodiscard]] static QColor defaultPlaceholderTextColor();

    explicit TextViewWithPlaceholder(QWidget *parent = nullptr);

    [[nodiscard]] qint64 maxNoOfCharacters() const { return m_maxNoOfCharacters; }
    void setMaxNoOfCharacters(qint64 limit);

    [[nodiscard]] QString placeholderText() const { return m_placeholderText; }
    void setPlaceholderText(const QString &text);

    [[nodiscard]] QColor placeholderTextColor() const { return m_placeholderTextColor; }
    void setPlaceholderTextColor(const QColor &color);

    [[nodiscard]] bool showingPlaceholder() const { return m_showingPlaceholder; }

    // "" while the placeholder shows, otherwise the text in the field.
    [[nodiscard]] QString text() const;
    // Puts the text in the field as it is: no limit, and the placeholder state
    // stays as it was.
    void setText(const QString &text);

    // The colour the text is currently drawn in.
    [[nodiscard]] QColor textColor() const;

signals:
    void maxNoOfCharactersChanged();
    void placeholderChanged();
    void showingPlaceholderChanged(bool showing);
    // The user changed the text (not setText, not the placeholder).
    void textEdited();

protected:
    void showEvent(QShowEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void showPlaceholderIfEmpty();
    void hidePlaceholder();
    void setShowingPlaceholder(bool showing);
    void setTextColor(const QColor &color);
    void replaceTextProgrammatically(const QString &text);
    void onContentsChanged();

    qint64 m_maxNoOfCharacters = defaultMaxNoOfCharacters;
    QString m_placeholderText;
    QColor m_placeholderTextColor = defaultPlaceholderTextColor();
    bool m_showingPlaceholder = true;
    QColor m_defaultTextColor;
    QString m_lastText;
    bool m_applyingText = false;
};

} // namespace ravelin
