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
    QTest::addColumn<qint64>("limit");
    QTest::addColumn<bool>("allowed");
    QTest::addColumn<bool>("setsText");
    QTest::addColumn<qsizetype>("setLength");

    QTest::newRow("typing into 511 units") << units(511) << qsizetype(511) << qsizetype(0) << QStringLiteral("b")
                                          << qint64(512) << true << true << qsizetype(512);
    QTest::newRow("typing into 510 units") << units(510) << qsizetype(510) << qsizetype(0) << QStringLiteral("b")
                                          << qint64(512) << true << false << qsizetype(0);
    QTest::newRow("paste to 600 units") << units(511) << qsizetype(100) << qsizetype(0) << units(89, QLatin1Char('p'))
                                       << qint64(512) << false << true << qsizetype(512);
    QTest::newRow("typing at the limit") << units(512) << qsizetype(512) << qsizetype(0) << QStringLiteral("b")
                                        << qint64(512) << false << true << qsizetype(512);
    QTest::newRow("deleting from the limit") << units(512) << qsizetype(511) << qsizetype(1) << QString()
                                            << qint64(512) << true << false << qsizetype(0);
    QTest::newRow("replacing a selection") << units(512) << qsizetype(0) << qsizetype(12) << QStringLiteral("xy")
                                          << qint64(512) << true << false << qsizetype(0);
    QTest::newRow("emoji into 510 units") << units(510) << qsizetype(510) << qsizetype(0) << grinningFace
                                         << qint64(512) << true << true << qsizetype(512);
    QTest::newRow("emoji into 511 units") << units(511) << qsizetype(511) << qsizetype(0) << grinningFace
                                         << qint64(512) << false << true << qsizetype(512);
    QTest::newRow("empty text, small limit") << QString() << qsizetype(0) << qsizetype(0) << QStringLiteral("abc")
                                            << qint64(2) << false << true << qsizetype(2);
}

void tst_TextLimit::evaluate()
{
    QFETCH(QString, current);
    QFETCH(qsizetype, start);
    QFETCH(qsizetype, length);
    QFETCH(QString, replacement);
    QFETCH(qint64, limit);
    QFETCH(bool, allowed);
    QFETCH(bool, setsText);
    QFETCH(qsizetype, setLength);

    QString expectedResult = current;
    expectedResult.replace(start, length, replacement);

    const TextEditDecision decision = TextLimit::evaluate(current, start, length, replacement, limit);
    QCOMPARE(decision.result, expectedResult);
    QCOMPARE(decision.allowed, allowed);
    QCOMPARE(decision.textToSet.has_value(), setsText);
    if (setsText) {
        QCOMPARE(decision.textToSet->size(), setLength);
        QCOMPARE(*decision.textToSet, expectedResult.left(setLength));
    }
}

void tst_TextLimit::rangeOutsideTheTextIsClamped()
{
    const TextEditDecision decision = TextLimit::evaluate(QStringLiteral("abc"), 10, 5, QStringLiteral("d"), 512);
    QCOMPARE(decision.result, QStringLiteral("abcd"));
    QVERIFY(decision.allowed);

    const TextEditDecision overlong = TextLimit::evaluate(QStringLiteral("abc"), 1, 99, QStringLiteral("X"), 512);
    QCOMPARE(overlong.result, QStringLiteral("aX"));
}

void tst_TextLimit::finalText_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("result");
    QTest::addColumn<qint64>("limit");
    QTest::addColumn<QString>("expected");

    QTest::newRow("under the limit") << QStringLiteral("ab") << QStringLiteral("abc") << qint64(5) << QStringLiteral("abc");
    QTest::newRow("exactly the limit") << QStringLiteral("abcd") << QStringLiteral("abcde") << qint64(5)
                                       << QStringLiteral("abcde");
    QTest::newRow("over the limit is cut") << QStringLiteral("ab") << QStringLiteral("abcdefgh") << qint64(5)
                                           << QStringLiteral("abcde");
    // The cut counts UTF-16 units and may split a surrogate pair.
    QTest::newRow("cut inside a surrogate pair") << QStringLiteral("abcd") << QStringLiteral("abcd") + grinningFace
                                                 << qint64(5) << QStringLiteral("abcd") + grinningFace.left(1);
}

void tst_TextLimit::finalText()
{
    QFETCH(QString, before);
    QFETCH(QString, result);
    QFETCH(qint64, limit);
    QFETCH(QString, expected);
    QCOMPARE(TextLimit::evaluate(result, limit).finalText(before), expected);
}

void tst_TextLimit::difference_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<qsizetype>("start");
    QTest::addColumn<qsizetype>("length");
    QTest::addColumn<QString>("replacement");

    QTest::newRow("typed at the end") << QStringLiteral("abc") << QStringLiteral("abcd") << qsizetype(3) << qsizetype(0)
                                      << QStringLiteral("d");
    QTest::newRow("typed in the middle") << QStringLiteral("abc") << QStringLiteral("abXc") << qsizetype(2)
                                         << qsizetype(0) << QStringLiteral("X");
    QTest::newRow("deleted") << QStringLiteral("abc") << QStringLiteral("ac") << qsizetype(1) << qsizetype(1) << QString();
    QTest::newRow("replaced") << QStringLiteral("hello world") << QStringLiteral("hello there") << qsizetype(6)
                              << qsizetype(5) << QStringLiteral("there");
    QTest::newRow("repeated letter") << QStringLiteral("aa") << QStringLiteral("aaa") << qsizetype(2) << qsizetype(0)
                                     << QStringLiteral("a");
    QTest::newRow("cleared") << QStringLiteral("abc") << QString() << qsizetype(0) << qsizetype(3) << QString();
}

void tst_TextLimit::difference()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(qsizetype, start);
    QFETCH(qsizetype, length);
    QFETCH(QString, replacement);

    const TextLimit::Change change = TextLimit::difference(before, after);
    QCOMPARE(change.start, start);
    QCOMPARE(change.length, length);
    QCOMPARE(change.replacement, replacement);
    QString rebuilt = before;
    rebuilt.replace(change.start, change.length, change.replacement);
    QCOMPARE(rebuilt, after);
}

QTEST_GUILESS_MAIN(tst_TextLimit)
#include "tst_textlimit.moc"
