#include "views/textlimit.h"

#include <QTest>

using namespace ravelin;

namespace {

QString units(qsizetype count, QChar fill = QLatin1Char('a'))
{
    return QString(count, fill);
}

// U+1F600, two UTF-16 units.
const QString grinningFace = QString::fromUtf8("\xF0\x9F\x98\x80");

} // namespace

class tst_TextLimit : public QObject
{
    Q_OBJECT

private slots:
    void evaluate_data();
    void evaluate();
    void rangeOutsideTheTextIsClamped();
    void finalText_data();
    void finalText();
    void difference_data();
    void difference();
};

void tst_TextLimit::evaluate_data()
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

void tst_TextLimit::evaluate()
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

void tst_TextLimit::rangeOutsideTheTextIsClamped()
{
    const TextEditDecision decision = TextLimit::evaluate(QStringLiteral("abc"), 10, 5, QStringLiteral("d"), 512);
    QCOMPARE(decision.result, QStringLiteral("abcd"));
    QVERIFY(decision.allowed);
    QCOMPARE(TextLimit::evaluate(QStringLiteral("abc"), 1, 99, QStringLiteral("X"), 512).result, QStringLiteral("aX"));
}

void tst_TextLimit::finalText_data()
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

void tst_TextLimit::finalText()
{
    QFETCH(QString, before);
    QFETCH(QString, result);
    QFETCH(QString, expected);
    QCOMPARE(TextLimit::evaluate(result, 5).finalText(before), expected);
}

void tst_TextLimit::difference_data()
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

void tst_TextLimit::difference()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(qsizetype, start);
    QFETCH(qsizetype, length);
    QFETCH(QString, replacement);
    QCOMPARE(TextLimit::difference(before, after), (TextLimit::Change{start, length, replacement}));
}

QTEST_GUILESS_MAIN(tst_TextLimit)
#include "tst_textlimit.moc"
