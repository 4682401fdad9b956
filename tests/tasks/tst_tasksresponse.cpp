#include "api/json.h"
#include "tasks/tasksresponse.h"
#include "tasks/tasksupdateresponse.h"

#include <QTest>

using namespace ravelin;

namespace {

const QList<TaskCategoryDefinition> s_categories{{0, QStringLiteral("All")}, {3, QStringLiteral("Pumps")}};

json::Options serverOptions()
{
    return json::Options{json::KeyDecoding::convertFromSnakeCase, json::DateDecoding::serverFormat, &s_categories};
}

QByteArray task(int id, const char *name, int statusId)
{
    return QStringLiteral(R"({"id":%1,"name":"%2","description":"","latitude":1.5,"longitude":2.5,"ownerId":7,
        "assignedUserId":7,"updaterUserId":null,"dateScheduled":null,"dateCreated":"2026-01-05T08:00:00.000+0000",
        "taskStatusId":%3,"taskCategoryId":3,"priority":2})")
        .arg(id)
        .arg(QLatin1String(name))
        .arg(statusId)
        .toUtf8();
}

} // namespace

class TestTasksResponse : public QObject
{
    Q_OBJECT

private slots:
    void decodesTasksInServerOrder();
    void decodesAnEmptyList();
    void envelopeErrors_data();
    void envelopeErrors();
    void updateResponseReadsTheTaskUnderData();
    void updateResponseNeedsData();
    void answersInARowShareNothing();
    void aDocumentInsideAnotherStaysValid();
};

void TestTasksResponse::decodesTasksInServerOrder()
{
    const QByteArray body = "{\"success\":true,\"data\":[" + task(9, "Valves", 2) + "," + task(4, "Meters", 6) + "]}";
    const auto r = json::decode<TasksResponse>(body, serverOptions());
    QVERIFY(r.success);
    QCOMPARE(r.data.size(), 2);
    QCOMPARE(r.data.at(0)->id, 9);
    QCOMPARE(r.data.at(0)->name, "Valves");
    QCOMPARE(r.data.at(0)->currentStatus, TaskStatus::assigned);
    QCOMPARE(r.data.at(1)->id, 4);
    QCOMPARE(r.data.at(1)->currentStatus, TaskStatus::complete);
    QCOMPARE(r.data.at(1)->taskCategory, (TaskCategoryDefinition{3, "Pumps"}));
}

void TestTasksResponse::decodesAnEmptyList()
{
    const auto r = json::decode<TasksResponse>(R"({"success":false,"data":[]})", serverOptions());
    QVERIFY(!r.success);
    QVERIFY(r.data.isEmpty());
}

void TestTasksResponse::envelopeErrors_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("no success") << QByteArray(R"({"data":[]})");
    QTest::newRow("no data") << QByteArray(R"({"success":true})");
    QTest::newRow("data is an object") << QByteArray("{\"success\":true,\"data\":" + task(1, "x", 1) + "}");
    QTest::newRow("one bad task fails all")
        << QByteArray("{\"success\":true,\"data\":[" + task(1, "x", 1) + ",{\"id\":2}]}");
    QTest::newRow("not JSON") << QByteArray("{\"success\":true,\"data\":[");
}

void TestTasksResponse::envelopeErrors()
{
    QFETCH(QByteArray, body);
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)json::decode<TasksResponse>(body, serverOptions()));
}

void TestTasksResponse::updateResponseReadsTheTaskUnderData()
{
    const QByteArray body = "{\"success\":true,\"data\":" + task(12, "Gate", 3) + "}";
    const auto r = json::decode<TasksUpdateResponse>(body, serverOptions());
    QVERIFY(r.success);
    QVERIFY(r.task);
    QCOMPARE(r.task->id, 12);
    QCOMPARE(r.task->currentStatus, TaskStatus::acknowledged);
    QCOMPARE(r.task->priority, TaskPriority::medium);
}

void TestTasksResponse::updateResponseNeedsData()
{
    const QByteArray body = "{\"success\":true,\"task\":" + task(12, "Gate", 3) + "}";
    try {
        (void)json::decode<TasksUpdateResponse>(body, serverOptions());
        QFAIL("decoding succeeded");
    } catch (const json::DecodingError &error) {
        QCOMPARE(error.kind(), json::DecodingError::Kind::keyNotFound);
    }
}

// Parsers are kept per thread between documents: an answer must never see
// anything of the one before, also after a failed or an over-large answer.
void TestTasksResponse::answersInARowShareNothing()
{
    const QByteArray two = "{\"success\":true,\"data\":[" + task(1, "First", 1) + "," + task(2, "Second", 2) + "]}";
    const QByteArray one = "{\"success\":false,\"data\":[" + task(3, "Third", 3) + "]}";
    QByteArray large = "{\"success\":true,\"data\":[";
    for (int i = 0; i < 30000; ++i)
        large += (i ? "," : "") + task(1000 + i, "Large answer task with a long enough name to grow the parser", 4);
    large += "]}";
    QVERIFY(large.size() > 8 * 1024 * 1024);

    QCOMPARE(json::decode<TasksResponse>(two, serverOptions()).data.size(), 2);
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)json::decode<TasksResponse>("{\"success\":tr", serverOptions()));
    const auto afterFailure = json::decode<TasksResponse>(one, serverOptions());
    QCOMPARE(afterFailure.data.size(), 1);
    QCOMPARE(afterFailure.data.first()->name, "Third");
    QVERIFY(!afterFailure.success);

    QCOMPARE(json::decode<TasksResponse>(large, serverOptions()).data.size(), 30000);
    const auto afterLarge = json::decode<TasksResponse>(two, serverOptions());
    QCOMPARE(afterLarge.data.size(), 2);
    QCOMPARE(afterLarge.data.at(1)->name, "Second");
}

void TestTasksResponse::aDocumentInsideAnotherStaysValid()
{
    json::Document outer(serverOptions());
    const json::Value root = outer.parse("{\"success\":true,\"data\":[" + task(5, "Outer", 1) + "]}");
    // A second document while the first is alive gets a parser of its own.
    const auto inner = json::decode<TasksResponse>("{\"success\":true,\"data\":[" + task(6, "Inner", 2) + "]}",
                                                    serverOptions());
    const TasksResponse outerResponse = TasksResponse::decode(root);
    QCOMPARE(outerResponse.data.first()->name, "Outer");
    QCOMPARE(inner.data.first()->name, "Inner");
}

QTEST_GUILESS_MAIN(TestTasksResponse)
#include "tst_tasksresponse.moc"
