#pragma once

#include <QString>

#include <optional>

namespace ravelin {

// What the character limit makes of one edit of a text view.
struct TextEditDecision
{
    // The text that the edit would produce.
    QString result;
    // Set when the view's text must be replaced at once (the result cut to the limit).
    std::optional<QString> textToSet;
    // Whether the edit itself goes through.
    bool allowed = true;

    // The text that the view shows after the edit: the text set at once if any,
    // otherwise the result when allowed, otherwise the text before the edit.
    [[nodiscard]] QString finalText(const QString &before) const;

    friend bool operator==(const TextEditDecision &, const TextEditDecision &) = default;
};

// The character limit of the note fields, counted in UTF-16 code units: an edit
// whose result reaches the limit first sets the text to the result's first
// `limit` units, and the edit goes through only when the result is at most
// `limit` units long (at exactly the limit both happen).
class TextLimit
{
public:
    // Replaces `length` units at `start` of the current text with the
    // replacement (a range outside the text is clamped to it).
    [[nodiscard]] static TextEditDecision evaluate(const QString &current, qsizetype start, qsizetype length,
                                                   const QString &replacement, qint64 limit);

    // The same rule for a result already known.
    [[nodiscard]] static TextEditDecision evaluate(const QString &result, qint64 limit);

    // The replaced range and its replacement that turn `before` into `after`
    // (longest common prefix and suffix kept).
    struct Change
    {
        qsizetype start = 0;
        qsizetype length = 0;
        QString replacement;

        friend bool operator==(const Change &, const Change &) = default;
    };
    [[nodiscard]] static Change difference(const QString &before, const QString &after);
};

} // namespace ravelin
