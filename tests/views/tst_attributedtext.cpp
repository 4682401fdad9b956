#include "views/attributedtext.h"
#include "views/textlimit.h"

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

QString units(qsizetype count, QChar fill = QLatin1Char('a'))
{
    return QString(count, fill);
}

// U+1F600, two UTF-16 units.
const QString grinningFace = QString::fromUtf8("\xF0\x9F\x98\x80");

} // namespace

class tst_AttributedText : public QObject
{
    Q_OBJECT

private slots:
    void plainTextJoinsRunsAndMarksImages();
    void appendKeepsTheOrderOfBothTexts();
    void htmlEscapesStylesAndKeepsBlanks();
    void insertIntoCarriesFontsColoursAndImages();
    void evaluate_data();
    void evaluate();
    void rangeOutsideTheTextIsClamped();
    void finalText_data();
    void finalText();
    void difference_data();
    void difference();
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

void tst_AttributedText::evaluate_data()
{
    QTest::addColumn<QString>("current");
    QTest::addColumn<qsizetype>("start");
    QTest::addColumn<qsizetype>("length");
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<bool>("allowed");
    QTest::addColumn<bool>("setsText");

    // The limit is 512 units; the text set at once is the result cut to it.
    QTest::newRow("typing into 511 units") << units(511) << qsizetype(511) << qsizetype(0) << "b" << true << true;
    QTest::newRow("typing into 510 units") << units(510) << qsizetype(510) << qsizetype(0) << "b" << true << false;
    QTest::newRow("paste to 600 units") << units(511) << qsizetype(100) << qsizetype(0) << units(89, QLatin1Char('p'))
                                        << false << true;
    QTest::newRow("typing at the limit") << units(512) << qsizetype(512) << qsizetype(0) << "b" << false << true;
    QTest::newRow("deleting from the limit")
        << units(512) << qsizetype(511) << qsizetype(1) << QString() << true << false;
    QTest::newRow("emoji into 510 units")
        << units(510) << qsizetype(510) << qsizetype(0) << grinningFace << true << true;
    QTest::newRow("emoji into 511 units")
        << units(511) << qsizetype(511) << qsizetype(0) << grinningFace << false << true;
}

void tst_AttributedText::evaluate()
{
    QFETCH(QString, current);
    QFETCH(qsizetype, start);
    QFETCH(qsizetype, length);
    QFETCH(QString, replacement);
    QFETCH(bool, allowed);
    QFETCH(bool, setsText);

    QString expectedResult = current;
    expectedResult.replace(start, length, replacement);
    const TextEditDecision decision = TextLimit::evaluate(current, start, length, replacement, 512);
    QCOMPARE(decision.result, expectedResult);
    QCOMPARE(decision.allowed, allowed);
    QCOMPARE(decision.textToSet, setsText ? std::optional(expectedResult.left(512)) : std::nullopt);
}

void tst_AttributedText::rangeOutsideTheTextIsClamped()
{
    const TextEditDecision decision = TextLimit::evaluate(QStringLiteral("abc"), 10, 5, QStringLiteral("d"), 512);
    QCOMPARE(decision.result, QStringLiteral("abcd"));
    QVERIFY(decision.allowed);
    QCOMPARE(TextLimit::evaluate(QStringLiteral("abc"), 1, 99, QStringLiteral("X"), 512).result, QStringLiteral("aX"));
}

void tst_AttributedText::finalText_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("result");
    QTest::addColumn<QString>("expected");

    // Limit 5.
    QTest::newRow("under the limit") << "ab"
                                     << "abc"
                                     << "abc";
    QTest::newRow("exactly the limit") << "abcd"
                                       << "abcde"
                                       << "abcde";
    QTest::newRow("over the limit is cut") << "ab"
                                           << "abcdefgh"
                                           << "abcde";
    // The cut counts UTF-16 units and may split a surrogate pair.
    QTest::newRow("cut inside a surrogate pair")
        << "abcd" << QStringLiteral("abcd") + grinningFace << QStringLiteral("abcd") + grinningFace.left(1);
}

void tst_AttributedText::finalText()
{
    QFETCH(QString, before);
    QFETCH(QString, result);
    QFETCH(QString, expected);
    QCOMPARE(TextLimit::evaluate(result, 5).finalText(before), expected);
}

void tst_AttributedText::difference_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<qsizetype>("start");
    QTest::addColumn<qsizetype>("length");
    QTest::addColumn<QString>("replacement");

    QTest::newRow("typed in the middle") << "abc"
                                         << "abXc" << qsizetype(2) << qsizetype(0) << "X";
    QTest::newRow("deleted") << "abc"
                             << "ac" << qsizetype(1) << qsizetype(1) << QString();
    QTest::newRow("replaced") << "hello world"
                              << "hello there" << qsizetype(6) << qsizetype(5) << "there";
    QTest::newRow("repeated letter") << "aa"
                                     << "aaa" << qsizetype(2) << qsizetype(0) << "a";
    QTest::newRow("cleared") << "abc" << QString() << qsizetype(0) << qsizetype(3) << QString();
}

void tst_AttributedText::difference()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(qsizetype, start);
    QFETCH(qsizetype, length);
    QFETCH(QString, replacement);
    QCOMPARE(TextLimit::difference(before, after), (TextLimit::Change{start, length, replacement}));
}

QTEST_MAIN(tst_AttributedText)
#include "tst_attributedtext.moc"
