#include "views/textviewwithplaceholder.h"

#include <QFocusEvent>
#include <QScopedValueRollback>
#include <QShowEvent>
#include <QTextCursor>

namespace ravelin {

QColor TextViewWithPlaceholder::defaultPlaceholderTextColor()
{
    return QColor::fromRgbF(0.78f, 0.78f, 0.8f, 1.0f);
}

TextViewWithPlaceholder::TextViewWithPlaceholder(QWidget *parent)
    : QPlainTextEdit(parent)
    , m_defaultTextColor(palette().color(QPalette::Text))
{
    connect(document(), &QTextDocument::contentsChanged, this, &TextViewWithPlaceholder::onContentsChanged);
}

void TextViewWithPlaceholder::setMaxNoOfCharacters(qint64 limit)
{
    if (m_maxNoOfCharacters == limit)
        return;
    m_maxNoOfCharacters = limit;
    emit maxNoOfCharactersChanged();
}

void TextViewWithPlaceholder::setPlaceholderText(const QString &text)
{
    if (m_placeholderText == text)
        return;
    m_placeholderText = text;
    if (m_showingPlaceholder && isVisible())
        replaceTextProgrammatically(m_placeholderText);
    emit placeholderChanged();
}

void TextViewWithPlaceholder::setPlaceholderTextColor(const QColor &color)
{
    if (m_placeholderTextColor == color)
        return;
    m_placeholderTextColor = color;
    if (m_showingPlaceholder && isVisible())
        setTextColor(m_placeholderTextColor);
    emit placeholderChanged();
}

QString TextViewWithPlaceholder::text() const
{
    return m_showingPlaceholder ? QString() : toPlainText();
}

void TextViewWithPlaceholder::setText(const QString &text)
{
    replaceTextProgrammatically(text);
}

QColor TextViewWithPlaceholder::textColor() const
{
    return palette().color(QPalette::Text);
}

void TextViewWithPlaceholder::showEvent(QShowEvent *event)
{
    QPlainTextEdit::showEvent(event);
    if (!event->spontaneous() && !hasFocus())
        showPlaceholderIfEmpty();
}

void TextViewWithPlaceholder::focusInEvent(QFocusEvent *event)
{
    hidePlaceholder();
    QPlainTextEdit::focusInEvent(event);
}

void TextViewWithPlaceholder::focusOutEvent(QFocusEvent *event)
{
    QPlainTextEdit::focusOutEvent(event);
    showPlaceholderIfEmpty();
}

void TextViewWithPlaceholder::showPlaceholderIfEmpty()
{
    if (!toPlainText().isEmpty())
        return;
    setShowingPlaceholder(true);
    setTextColor(m_placeholderTextColor);
    replaceTextProgrammatically(m_placeholderText);
}

void TextViewWithPlaceholder::hidePlaceholder()
{
    if (!m_showingPlaceholder)
        return;
    replaceTextProgrammatically(QString());
    setTextColor(m_defaultTextColor);
    setShowingPlaceholder(false);
}

void TextViewWithPlaceholder::setShowingPlaceholder(bool showing)
{
    if (m_showingPlaceholder == showing)
        return;
    m_showingPlaceholder = showing;
    emit showingPlaceholderChanged(showing);
}

void TextViewWithPlaceholder::setTextColor(const QColor &color)
{
    QPalette colored = palette();
    if (colored.color(QPalette::Text) == color)
        return;
    colored.setColor(QPalette::Text, color);
    setPalette(colored);
}

void TextViewWithPlaceholder::replaceTextProgrammatically(const QString &text)
{
    const QScopedValueRollback applying(m_applyingText, true);
    setPlainText(text);
    m_lastText = toPlainText();
}

void TextViewWithPlaceholder::onContentsChanged()
{
    if (m_applyingText)
        return;
    const QString before = m_lastText;
    const QString after = toPlainText();
    if (before == after)
        return;

    const TextLimit::Change change = TextLimit::difference(before, after);
    const TextEditDecision decision
        = TextLimit::evaluate(before, change.start, change.length, change.replacement, m_maxNoOfCharacters);
    const QString shown = decision.finalText(before);

    if (shown != after) {
        const QScopedValueRollback applying(m_applyingText, true);
        QTextCursor cursor(document());
        if (after.startsWith(shown)) {
            // Cut the tail only, which keeps the undo history and the caret.
            cursor.setPosition(static_cast<int>(shown.size()));
            cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
            cursor.removeSelectedText();
        } else {
            cursor.select(QTextCursor::Document);
            cursor.insertText(shown);
        }
        QTextCursor caret = textCursor();
        if (caret.position() > static_cast<int>(shown.size())) {
            caret.setPosition(static_cast<int>(shown.size()));
            setTextCursor(caret);
        }
    }
    m_lastText = toPlainText();
    emit textEdited();
}

} // namespace ravelin
