#include "views/attributedtext.h"

#include <QTest>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFragment>
#include <QTextImageFormat>

using namespace ravelin;

namespace {

QImage square(const QColor &color)
{
    QImage image(12, 12, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

QString throughDocument(const QString &html)
{
    QTextDocument document;
    document.setHtml(html);
    return document.toPlainText();
}

} // namespace

class tst_AttributedText : public QObject
{
    Q_OBJECT

private slots:
    void plainTextJoinsRunsAndMarksImages();
    void appendKeepsTheOrderOfBothTexts();
    void htmlEscapesStylesAndKeepsBlanks();
    void insertIntoCarriesFontsColoursAndImages();
};

void tst_AttributedText::plainTextJoinsRunsAndMarksImages()
{
    AttributedText text;
    text.append(QString());
    QVERIFY(text.isEmpty());
    text.appendImage(square(Qt::green), QRectF(0, -3, 12, 12));
    text.append(QStringLiteral("Valve V-3\n"));
    // An image that failed to load still takes its place.
    text.appendImage(QImage(), QRectF(0, -3, 12, 12));
    text.append(QStringLiteral("Gauge G-7\n"));

    const QString expected = QString(AttributedText::objectReplacementCharacter) + QStringLiteral("Valve V-3\n")
        + QString(AttributedText::objectReplacementCharacter) + QStringLiteral("Gauge G-7\n");
    QCOMPARE(text.plainText(), expected);
    QCOMPARE(text.length(), expected.size());
    QCOMPARE(text.runs().size(), 4);
    QVERIFY(text.runs().at(0).isImage());
    QVERIFY(!text.runs().at(1).isImage());
}

void tst_AttributedText::appendKeepsTheOrderOfBothTexts()
{
    QFont light;
    light.setWeight(QFont::ExtraLight);
    AttributedText heading(QStringLiteral("\n Items:\n\n"), light);
    heading.append(AttributedText(QStringLiteral("A\nB")));
    QCOMPARE(heading.plainText(), QStringLiteral("\n Items:\n\nA\nB"));
    QCOMPARE(heading.runs().at(0).font, std::optional<QFont>(light));
    QVERIFY(!heading.runs().at(1).font.has_value());
}

void tst_AttributedText::htmlEscapesStylesAndKeepsBlanks()
{
    QFont font;
    font.setFamilies({QStringLiteral("DejaVu Sans")});
    font.setPointSize(12);
    font.setWeight(QFont::Light);
    const QString html = AttributedText(QStringLiteral("a<b> & c"), font, QColor(255, 0, 0)).toHtml();
    for (const char *part :
         {"a&lt;b&gt; &amp; c", "font-size:12pt", "font-weight:300", "color:#ffff0000", "'DejaVu Sans'"})
        QVERIFY2(html.contains(QLatin1String(part)), qPrintable(html));

    AttributedText withImage;
    withImage.appendImage(square(Qt::red), QRectF(0, 0, 12, 12));
    withImage.append(QStringLiteral("x"));
    QCOMPARE(throughDocument(withImage.toHtml()), QStringLiteral("x"));

    const QString blanks = QStringLiteral("\n  The task status Pump was changed\n ");
    QCOMPARE(throughDocument(AttributedText(blanks).toHtml()), blanks);
}

void tst_AttributedText::insertIntoCarriesFontsColoursAndImages()
{
    QFont bold;
    bold.setWeight(QFont::Bold);
    AttributedText text;
    text.appendImage(square(Qt::green), QRectF(0, -2, 14, 14));
    text.append(QStringLiteral("Item one\n"), bold, QColor(Qt::blue));

    QTextDocument document;
    QTextCursor cursor(&document);
    text.insertInto(cursor);
    QCOMPARE(document.toPlainText(),
             QString(AttributedText::objectReplacementCharacter) + QStringLiteral("Item one\n"));

    QList<QTextCharFormat> formats;
    for (QTextBlock::iterator it = document.begin().begin(); !it.atEnd(); ++it)
        formats.append(it.fragment().charFormat());
    QVERIFY(formats.size() >= 2);
    QVERIFY(formats.at(0).isImageFormat());
    const QTextImageFormat image = formats.at(0).toImageFormat();
    QCOMPARE(QSizeF(image.width(), image.height()), QSizeF(14, 14));
    const QVariant resource = document.resource(QTextDocument::ImageResource, QUrl(image.name()));
    QCOMPARE(resource.value<QImage>().pixelColor(5, 5), QColor(Qt::green));
    QCOMPARE(formats.at(1).fontWeight(), int(QFont::Bold));
    QCOMPARE(formats.at(1).foreground().color(), QColor(Qt::blue));
}

QTEST_MAIN(tst_AttributedText)
#include "tst_attributedtext.moc"
