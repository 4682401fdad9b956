#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QList>
#include <QRectF>
#include <QString>

#include <optional>

class QTextCursor;

namespace ravelin {

// One run of styled text: text with an optional font and colour, or an inline
// image drawn in the given bounds (origin relative to the baseline).
struct TextRun
{
    QString text;
    std::optional<QFont> font;
    std::optional<QColor> color;
    QImage image;
    QRectF imageBounds;

    [[nodiscard]] bool isImage() const { return !image.isNull() || !imageBounds.isNull(); }

    friend bool operator==(const TextRun &, const TextRun &) = default;
};

// Text made of styled runs: alert messages with mixed weights, the coloured
// "details" lines of comments. Runs without a font or colour take those of the
// view that shows the text.
class AttributedText
{
public:
    // The character that stands for an inline image in plainText().
    static constexpr QChar objectReplacementCharacter = QChar(0xFFFC);

    AttributedText() = default;
    explicit AttributedText(const QString &text, std::optional<QFont> font = std::nullopt,
                            std::optional<QColor> color = std::nullopt);

    AttributedText &append(const QString &text, std::optional<QFont> font = std::nullopt,
                           std::optional<QColor> color = std::nullopt);
    AttributedText &appendImage(const QImage &image, const QRectF &bounds);
    AttributedText &append(const AttributedText &other);

    [[nodiscard]] const QList<TextRun> &runs() const { return m_runs; }
    [[nodiscard]] bool isEmpty() const { return m_runs.isEmpty(); }

    // The text, one replacement character per image.
    [[nodiscard]] QString plainText() const;
    // Length in UTF-16 units, images counting one each.
    [[nodiscard]] qsizetype length() const { return plainText().size(); }

    // Rich text for labels: fonts and colours; images are left out.
    [[nodiscard]] QString toHtml() const;

    // Inserts the runs at the cursor; images become resources of the cursor's
    // document, drawn at the size of their bounds.
    void insertInto(QTextCursor &cursor) const;

    friend bool operator==(const AttributedText &, const AttributedText &) = default;

private:
    QList<TextRun> m_runs;
};

} // namespace ravelin
