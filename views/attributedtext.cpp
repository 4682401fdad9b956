#include "views/attributedtext.h"

#include <QAtomicInteger>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextImageFormat>
#include <QUrl>

namespace ravelin {

namespace {

QString cssFor(const TextRun &run)
{
    QStringList css;
    if (run.font) {
        const QFont &font = *run.font;
        if (!font.families().isEmpty())
            css.append(QStringLiteral("font-family:'%1'").arg(font.families().join(QStringLiteral("','"))));
        if (font.pointSizeF() > 0)
            css.append(QStringLiteral("font-size:%1pt").arg(font.pointSizeF()));
        else if (font.pixelSize() > 0)
            css.append(QStringLiteral("font-size:%1px").arg(font.pixelSize()));
        css.append(QStringLiteral("font-weight:%1").arg(static_cast<int>(font.weight())));
        if (font.italic())
            css.append(QStringLiteral("font-style:italic"));
    }
    if (run.color)
        css.append(QStringLiteral("color:%1").arg(run.color->name(QColor::HexArgb)));
    return css.join(QLatin1Char(';'));
}

} // namespace

AttributedText::AttributedText(const QString &text, std::optional<QFont> font, std::optional<QColor> color)
{
    append(text, std::move(font), color);
}

AttributedText &AttributedText::append(const QString &text, std::optional<QFont> font, std::optional<QColor> color)
{
    if (text.isEmpty())
        return *this;
    TextRun run;
    run.text = text;
    run.font = std::move(font);
    run.color = color;
    m_runs.append(std::move(run));
    return *this;
}

AttributedText &AttributedText::appendImage(const QImage &image, const QRectF &bounds)
{
    TextRun run;
    run.image = image;
    run.imageBounds = bounds;
    m_runs.append(std::move(run));
    return *this;
}

AttributedText &AttributedText::append(const AttributedText &other)
{
    m_runs.append(other.m_runs);
    return *this;
}

QString AttributedText::plainText() const
{
    QString text;
    for (const TextRun &run : m_runs)
        text += run.isImage() ? QString(objectReplacementCharacter) : run.text;
    return text;
}

QString AttributedText::toHtml() const
{
    QString html;
    for (const TextRun &run : m_runs) {
        if (run.isImage())
            continue;
        QString escaped = run.text.toHtmlEscaped();
        escaped.replace(QLatin1Char('\n'), QStringLiteral("<br>"));
        const QString css = cssFor(run);
        if (css.isEmpty())
            html += escaped;
        else
            html += QStringLiteral("<span style=\"%1\">%2</span>").arg(css, escaped);
    }
    // Blanks stay as written (messages indent with them).
    return QStringLiteral("<span style=\"white-space:pre-wrap\">%1</span>").arg(html);
}

void AttributedText::insertInto(QTextCursor &cursor) const
{
    const QTextCharFormat base = cursor.charFormat();
    static QAtomicInteger<quint64> imageNumber;
    for (const TextRun &run : m_runs) {
        if (run.isImage()) {
            QTextImageFormat format;
            if (!run.image.isNull() && cursor.document() != nullptr) {
                const QUrl url(QStringLiteral("ravelin-inline://image/%1").arg(imageNumber.fetchAndAddRelaxed(1)));
                cursor.document()->addResource(QTextDocument::ImageResource, url, run.image);
                format.setName(url.toString());
            }
            format.setWidth(run.imageBounds.width());
            format.setHeight(run.imageBounds.height());
            format.setVerticalAlignment(QTextCharFormat::AlignBaseline);
            cursor.insertImage(format);
            continue;
        }
        QTextCharFormat format = base;
        if (run.font)
            format.setFont(*run.font);
        if (run.color)
            format.setForeground(*run.color);
        cursor.insertText(run.text, format);
    }
    cursor.setCharFormat(base);
}

} // namespace ravelin
