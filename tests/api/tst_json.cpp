#include "api/datecoding.h"
#include "api/debuglog.h"
#include "api/json.h"
#include "support/logcapture.h"

#include <QTest>

using namespace ravelin;

using namespace ravelin::test;

class TestJson : public QObject
{
    Q_OBJECT

private slots:
    void snakeCase_data();
    void snakeCase();
    void serverDate_data();
    void serverDate();
    void keyConversionOnlyWhenAsked();
    void typedReads_data();
    void typedReads();
    void optionalAndNullableKeys();
    void membersInDocumentOrder();
    void malformedJsonIsDataCorrupted();
    void stringsOutliveTheirAnswer_data();
    void stringsOutliveTheirAnswer();
    void cleanup() { QLoggingCategory::setFilterRules(QString()); }
    void hostsFilterByRules_data();
    void hostsFilterByRules();
};

void TestJson::snakeCase_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("converted");
    QTest::newRow("plain words") << QString("item_status_id") << "itemStatusId";
    QTest::newRow("no underscore stays") << QString("taskStatusId") << "taskStatusId";
    QTest::newRow("upper case words are folded") << QString("TASK_CATEGORY") << "taskCategory";
    QTest::newRow("leading and trailing underscores stay") << QString("__task_id__") << "__taskId__";
    QTest::newRow("doubled inner underscore") << QString("date__created") << "dateCreated";
    QTest::newRow("only underscores") << QString("___") << "___";
}

void TestJson::snakeCase()
{
    QFETCH(QString, key);
    QTEST(QString::fromStdString(json::convertFromSnakeCase(key.toStdString())), "converted");
}

void TestJson::serverDate_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("msecs"); // -1: rejected
    QTest::newRow("Z zone") << "2026-11-20T10:15:30.123Z" << qint64(1795169730123);
    QTest::newRow("+0000") << "2026-11-20T10:15:30.123+0000" << qint64(1795169730123);
    QTest::newRow("+0200 is two hours earlier") << "2026-11-20T12:15:30.123+0200" << qint64(1795169730123);
    QTest::newRow("-05:30") << "2026-11-20T04:45:30.123-05:30" << qint64(1795169730123);
    QTest::newRow("epoch") << "1970-01-01T00:00:00.000Z" << qint64(0);
    QTest::newRow("leap day") << "2024-02-29T00:00:00.000Z" << qint64(1709164800000);
    QTest::newRow("no fraction") << "2026-11-20T10:15:30Z" << qint64(-1);
    QTest::newRow("no zone") << "2026-11-20T10:15:30.123" << qint64(-1);
    QTest::newRow("30 February") << "2026-02-30T10:15:30.123Z" << qint64(-1);
    QTest::newRow("space for T") << "2026-11-20 10:15:30.123Z" << qint64(-1);
    QTest::newRow("trailing text") << "2026-11-20T10:15:30.123Zx" << qint64(-1);
}

void TestJson::serverDate()
{
    QFETCH(QString, text);
    QFETCH(qint64, msecs);
    const auto parsed = parseServerDateMSecs(text.toStdString());
    if (msecs < 0) {
        QVERIFY(!parsed);
        return;
    }
    QVERIFY(parsed);
    QCOMPARE(*parsed, msecs);
    // Written back in UTC and read again, the moment is the same.
    const auto again = parseServerDate(formatServerDate(*parseServerDate(text.toStdString())).toStdString());
    QCOMPARE(again->toMSecsSinceEpoch(), msecs);
}

void TestJson::keyConversionOnlyWhenAsked()
{
    const QByteArray body = R"({"task_status_id": 4})";
    json::Document converting({json::KeyDecoding::convertFromSnakeCase});
    QCOMPARE(converting.parse(body).toObject().int64("taskStatusId"), 4);

    json::Document plain({json::KeyDecoding::useDefaultKeys});
    const json::Object o = plain.parse(body).toObject();
    QVERIFY(!o.contains("taskStatusId"));
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)o.int64("taskStatusId"));
}

void TestJson::typedReads_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("kind"); // -1: reads fine
    const int mismatch = int(json::DecodingError::Kind::typeMismatch);
    QTest::newRow("int") << QByteArray(R"({"v": 7})") << -1;
    QTest::newRow("integral double") << QByteArray(R"({"v": 7.0})") << -1;
    QTest::newRow("fractional double") << QByteArray(R"({"v": 7.5})") << int(json::DecodingError::Kind::dataCorrupted);
    QTest::newRow("string") << QByteArray(R"({"v": "7"})") << mismatch;
    QTest::newRow("bool") << QByteArray(R"({"v": true})") << mismatch;
    QTest::newRow("null") << QByteArray(R"({"v": null})") << int(json::DecodingError::Kind::valueNotFound);
    QTest::newRow("missing") << QByteArray(R"({"w": 7})") << int(json::DecodingError::Kind::keyNotFound);
}

void TestJson::typedReads()
{
    QFETCH(QByteArray, body);
    QFETCH(int, kind);
    json::Document doc;
    const json::Object o = doc.parse(body).toObject();
    try {
        QCOMPARE(o.int64("v"), 7);
        QCOMPARE(kind, -1);
    } catch (const json::DecodingError &error) {
        QCOMPARE(int(error.kind()), kind);
        QVERIFY(error.localizedDescription().startsWith(QStringLiteral("The data couldn’t be read because it")));
    }
}

void TestJson::optionalAndNullableKeys()
{
    json::Document doc;
    const json::Object o = doc.parse(R"({"n": null, "i": 3, "d": "2026-11-20T10:15:30.123Z"})").toObject();
    QCOMPARE(o.int64IfPresent("absent"), std::nullopt);
    QCOMPARE(o.int64IfPresent("n"), std::nullopt);
    QCOMPARE(o.int64IfPresent("i"), 3);
    QCOMPARE(o.nullableInt64("n"), std::nullopt);
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)o.nullableInt64("absent"));
    QCOMPARE(o.dateIfPresent("d")->toMSecsSinceEpoch(), 1795169730123);
    // Lookups in any order find their keys, also after the cursor moved past them.
    QCOMPARE(o.int64("i"), 3);
    QVERIFY(o.contains("n"));
}

void TestJson::membersInDocumentOrder()
{
    static constexpr std::array<std::string_view, 2> keys{"taskStatusId", "name"};
    json::Document doc({json::KeyDecoding::convertFromSnakeCase});
    QStringList met;
    const json::Object o = doc.parse(R"({"name": "a", "other": [1], "task_status_id": 4})").toObject();
    const auto seen = o.forEachMember(keys, [&](std::size_t slot, const json::Value &v) {
        met.append(slot == 0 ? QString::number(v.toInt64()) : v.toString());
    });
    QCOMPARE(met, (QStringList{"a", "4"}));
    QCOMPARE(seen, 0b11U);
    const json::Object repeated = doc.parse(R"({"name": "a", "name": "b"})").toObject();
    QVERIFY_THROWS_EXCEPTION(json::DecodingError,
                             repeated.forEachMember(keys, [](std::size_t, const json::Value &) {}));
}

void TestJson::malformedJsonIsDataCorrupted()
{
    json::Document doc;
    try {
        (void)doc.parse("{\"success\": tru");
        QFAIL("malformed JSON was accepted");
    } catch (const json::DecodingError &error) {
        QCOMPARE(error.kind(), json::DecodingError::Kind::dataCorrupted);
    }
}

void TestJson::stringsOutliveTheirAnswer_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("ascii") << QStringLiteral("Pump station");
    QTest::newRow("accents and emoji") << QStringLiteral("Prüfung – Ventil \U0001F527");
    QTest::newRow("longer than a pooled string") << QStringLiteral("x").repeated(5000);
}

void TestJson::stringsOutliveTheirAnswer()
{
    QFETCH(QString, text);
    QStringList read;
    {
        json::Document document;
        const QByteArray body = "[\"" + text.toUtf8() + "\", \"neighbour\", \"" + text.toUtf8() + "\"]";
        for (const json::Value v : document.parse(body).toArray())
            read.append(v.toString());
    }
    QCOMPARE(read, (QStringList{text, "neighbour", text}));
    // Each string ends where it should, and a change to one leaves the others alone.
    QCOMPARE(read.at(0).utf16()[text.size()], u'\0');
    read[1].append(QStringLiteral(" changed"));
    read[0].prepend(QLatin1Char('>'));
    QCOMPARE(read, (QStringList{QLatin1Char('>') + text, "neighbour changed", text}));
}

void TestJson::hostsFilterByRules_data()
{
    QTest::addColumn<QString>("rules");
    QTest::addColumn<QStringList>("kept");
    QTest::newRow("no rules") << QString()
                              << QStringList{"ravelin.api", "ravelin.tasks", "ravelin.comments", "ravelin.items"};
    QTest::newRow("all off") << "ravelin.*.debug=false" << QStringList{};
    QTest::newRow("only the network") << "ravelin.*.debug=false\nravelin.api.debug=true" << QStringList{"ravelin.api"};
}

void TestJson::hostsFilterByRules()
{
    QFETCH(QString, rules);
    QFETCH(QStringList, kept);
    QLoggingCategory::setFilterRules(rules);
    LogCapture log;
    for (const LogCategory category : {lcApi, lcTasks, lcComments, lcItems})
        debugLog(category, QStringLiteral("line"));
    QCOMPARE(log.categories(), kept);
}

QTEST_GUILESS_MAIN(TestJson)
#include "tst_json.moc"
