#include "api/networkmanager.h"
#include "comments/taskcommentpayload.h"
#include "comments/taskscommentsresponse.h"
#include "support/fatalerrortrap.h"

#include <QJsonDocument>
#include <QTest>

using namespace ravelin;
using namespace std::chrono;

namespace {

QByteArray commentJson(const QByteArray &extra)
{
    QByteArray members
        = R"("userId":3,"dateCreated":"2026-11-20T10:15:30.123Z","assetName":"Truck 12","assetIcon":"truck","isIncident":"0")";
    if (!extra.isEmpty())
        members += ',' + extra;
    return R"({"success":true,"data":[{)" + members + "}]}";
}

CommentPtr decodeOne(const QByteArray &extra)
{
    return json::decode<TasksCommentsResponse>(commentJson(extra), NetworkManager::decodingOptions()).data.first();
}

} // namespace

class TestCommentRecords : public QObject
{
    Q_OBJECT

private slots:
    void incidentFlagIsAString_data();
    void incidentFlagIsAString();
    void optionalMembers_data();
    void optionalMembers();
    void brokenMediaFailsTheAnswer();
    void payloadWireForm();
    void payloadTextAndTime_data();
    void payloadTextAndTime();
    void payloadWithoutTextStops();
};

void TestCommentRecords::incidentFlagIsAString_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("incident");
    QTest::newRow("\"0\"") << QByteArray(R"("0")") << false;
    QTest::newRow("\"1\"") << QByteArray(R"("1")") << true;
    QTest::newRow("empty") << QByteArray(R"("")") << true;
    QTest::newRow("\"false\"") << QByteArray(R"("false")") << true;
}

void TestCommentRecords::incidentFlagIsAString()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, incident);
    QByteArray body = commentJson({});
    body.replace(R"("isIncident":"0")", "\"isIncident\":" + value);
    const auto comment = json::decode<TasksCommentsResponse>(body, NetworkManager::decodingOptions()).data.first();
    QCOMPARE(comment->isIncident, incident);

    // A boolean on the wire is not accepted.
    body.replace("\"isIncident\":" + value, R"("isIncident":true)");
    QVERIFY_THROWS_EXCEPTION(json::DecodingError,
                             (void)json::decode<TasksCommentsResponse>(body, NetworkManager::decodingOptions()));
}

void TestCommentRecords::optionalMembers_data()
{
    QTest::addColumn<QByteArray>("extra");
    QTest::addColumn<QString>("text"); // "<none>" for no text
    QTest::addColumn<QList<qint64>>("itemIds");
    QTest::addColumn<int>("mediaCount");
    QTest::newRow("nothing optional") << QByteArray() << "<none>" << QList<qint64>{} << 0;
    QTest::newRow("nulls") << QByteArray(R"("text":null,"itemId":null)") << "<none>" << QList<qint64>{} << 0;
    QTest::newRow("item and text") << QByteArray(R"("text":"Leak at valve","itemId":17)") << "Leak at valve"
                                   << QList<qint64>{17} << 0;
    QTest::newRow("empty media") << QByteArray(R"("media":[])") << "<none>" << QList<qint64>{} << 0;
    QTest::newRow("two pictures") << QByteArray(
        R"("media":[{"path":"a.jpg","dateCreated":"2026-11-20T10:15:31.000Z","commentId":5},
                                 {"path":"b.jpg","dateCreated":"2026-11-20T10:15:32.000Z","comment_id":5}])")
                                  << "<none>" << QList<qint64>{} << 2;
}

void TestCommentRecords::optionalMembers()
{
    QFETCH(QByteArray, extra);
    QFETCH(QString, text);
    QFETCH(QList<qint64>, itemIds);
    QFETCH(int, mediaCount);
    const CommentPtr c = decodeOne(extra);
    QCOMPARE(c->text.value_or(QStringLiteral("<none>")), text);
    QCOMPARE(c->itemIds, itemIds);
    QCOMPARE(c->media.size(), mediaCount);
    QCOMPARE(c->assetIcon, QStringLiteral("list_pin_truck"));
    QCOMPARE(c->dateCreated.toMSecsSinceEpoch(), 1795169730123);
    QCOMPARE(c->userId, 3);
}

void TestCommentRecords::brokenMediaFailsTheAnswer()
{
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)decodeOne(R"("media":[{"path":"a.jpg"}])"));
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)decodeOne(R"("media":{})"));
}

void TestCommentRecords::payloadWireForm()
{
    const TaskCommentPayload payload(QStringLiteral("ok"), 4, 9, std::nullopt, false, std::nullopt,
                                     TimePoint(milliseconds(1700000000000)));
    const QJsonObject wire = QJsonDocument::fromJson(payload.toJson()).object();
    const QJsonObject expected{{"text", "ok"},
                               {"task_id", 4},
                               {"user_id", 9},
                               {"item_id", QJsonValue::Null},
                               {"date_created", qint64(1700000000000)},
                               {"is_incident", false},
                               {"media_path", QJsonValue::Null}};
    QCOMPARE(wire, expected);
}

void TestCommentRecords::payloadTextAndTime_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("nanoseconds");
    QTest::addColumn<QString>("sentText");
    QTest::addColumn<qint64>("sentMillis");
    QTest::newRow("rounds up from .6") << "a" << qint64(1700000000001600000) << "a" << qint64(1700000000002);
    QTest::newRow("rounds down below .5") << "a" << qint64(1700000000001400000) << "a" << qint64(1700000000001);
    QTest::newRow("half rounds away from zero") << "a" << qint64(1700000000001500000) << "a" << qint64(1700000000002);
    QTest::newRow("empty text becomes a space") << "" << qint64(0) << " " << qint64(0);
    QTest::newRow("blank text is kept") << "  " << qint64(0) << "  " << qint64(0);
}

void TestCommentRecords::payloadTextAndTime()
{
    QFETCH(QString, text);
    QFETCH(qint64, nanoseconds);
    QFETCH(QString, sentText);
    QFETCH(qint64, sentMillis);
    const TaskCommentPayload payload(
        text, 1, 2, 3, true, QStringLiteral("m.jpg"),
        TimePoint(duration_cast<system_clock::duration>(std::chrono::nanoseconds(nanoseconds))));
    QCOMPARE(payload.text, sentText);
    QCOMPARE(payload.dateCreated, sentMillis);
    const QJsonObject wire = payload.encode();
    QCOMPARE(wire.value("item_id").toInteger(), 3);
    QCOMPARE(wire.value("media_path").toString(), QStringLiteral("m.jpg"));
}

void TestCommentRecords::payloadWithoutTextStops()
{
    test::FatalErrorTrap trap;
    QVERIFY_THROWS_EXCEPTION(test::FatalErrorRaised,
                             TaskCommentPayload(std::nullopt, 1, 2, std::nullopt, false, std::nullopt, TimePoint()));
}

QTEST_GUILESS_MAIN(TestCommentRecords)
#include "tst_commentrecords.moc"
