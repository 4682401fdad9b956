#include "api/json.h"
#include "tasks/tasksresponse.h"
#include "tasks/tasksupdateresponse.h"

#include <QTest>

using namespace ravelin;

namespace {

const QList<TaskCategoryDefinition> s_categories{{0, QStringLiteral("All")}, {3, QStringLiteral("Pumps")}};
const json::Options s_options{json::KeyDecoding::convertFromSnakeCase, json::DateDecoding::serverFormat, &s_categories};

QByteArray task(int id, const char *name = "Task")
{
    return QStringLiteral(R"({"id":%1,"name":"%2","description":"","latitude":1.5,"longitude":2.5,"ownerId":7,
        "assignedUserId":7,"updaterUserId":null,"dateScheduled":null,"dateCreated":"2026-01-05T08:00:00.000+0000",
        "taskStatusId":2,"taskCategoryId":3,"priority":2})")
        .arg(id)
        .arg(QLatin1String(name))
        .toUtf8();
}

// A tasks answer with the given tasks under "data".
QByteArray answer(const QList<QByteArray> &tasks, bool success = true)
{
    return "{\"success\":" + QByteArray(success ? "true" : "false") + ",\"data\":[" + tasks.join(',') + "]}";
}

QStringList names(const TasksResponse &response)
{
    QStringList out;
    for (const TaskPtr &t : response.data)
        out.append(t->name);
    return out;
}

} // namespace

class TestTasksResponse : public QObject
{
    Q_OBJECT

private slots:
    void decodesTasksInServerOrder();
    void envelopeErrors_data();
    void envelopeErrors();
    void updateResponseReadsTheTaskUnderData();
    void answersInARowShareNothing();
};

void TestTasksResponse::decodesTasksInServerOrder()
{
    TaskPtr kept;
    QString copied;
    {
        const auto r = json::decode<TasksResponse>(answer({task(9, "Valves"), task(4, "Meters")}), s_options);
        QVERIFY(r.success);
        QCOMPARE(names(r), (QStringList{"Valves", "Meters"}));
        QCOMPARE(r.data.at(1)->taskCategory, (TaskCategoryDefinition{3, "Pumps"}));
        kept = r.data.at(1);
        copied = r.data.at(0)->name;
    }
    // The tasks of an answer share their storage; any one of them, and any
    // string taken from them, outlives the rest, and a change stays its own.
    copied += QStringLiteral(" and seals");
    QCOMPARE(copied, QStringLiteral("Valves and seals"));
    QCOMPARE(kept->name, QStringLiteral("Meters"));
    kept->name.append(QLatin1Char('!'));
    QCOMPARE(kept->name, QStringLiteral("Meters!"));

    const auto empty = json::decode<TasksResponse>(answer({}, false), s_options);
    QVERIFY(!empty.success);
    QVERIFY(empty.data.isEmpty());
}

void TestTasksResponse::envelopeErrors_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("no success") << QByteArray(R"({"data":[]})");
    QTest::newRow("no data") << QByteArray(R"({"success":true})");
    QTest::newRow("data is an object") << QByteArray("{\"success\":true,\"data\":" + task(1) + "}");
    QTest::newRow("one bad task fails all") << answer({task(1), "{\"id\":2}"});
}

void TestTasksResponse::envelopeErrors()
{
    QFETCH(QByteArray, body);
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)json::decode<TasksResponse>(body, s_options));
}

void TestTasksResponse::updateResponseReadsTheTaskUnderData()
{
    const auto r = json::decode<TasksUpdateResponse>("{\"success\":true,\"data\":" + task(12, "Gate") + "}", s_options);
    QVERIFY(r.success);
    QVERIFY(r.task);
    QCOMPARE(r.task->name, "Gate");
    try {
        (void)json::decode<TasksUpdateResponse>("{\"success\":true,\"task\":" + task(12) + "}", s_options);
        QFAIL("decoding succeeded");
    } catch (const json::DecodingError &error) {
        QCOMPARE(error.kind(), json::DecodingError::Kind::keyNotFound);
    }
}

// Parsers are kept per thread between documents: an answer must never see
// anything of the one before, also after a failed or an over-large answer, and a
// document parsed while another is alive gets a parser of its own.
void TestTasksResponse::answersInARowShareNothing()
{
    QList<QByteArray> many;
    for (int i = 0; i < 30000; ++i)
        many.append(task(1000 + i, "Large answer task with a long enough name to grow the parser"));
    const QByteArray large = answer(many);
    QVERIFY(large.size() > 8 * 1024 * 1024);

    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)json::decode<TasksResponse>("{\"success\":tr", s_options));
    const auto afterFailure = json::decode<TasksResponse>(answer({task(3, "Third")}, false), s_options);
    QCOMPARE(names(afterFailure), QStringList{"Third"});
    QVERIFY(!afterFailure.success);
    QCOMPARE(json::decode<TasksResponse>(large, s_options).data.size(), 30000);
    const auto afterLarge = json::decode<TasksResponse>(answer({task(1, "First"), task(2, "Second")}), s_options);
    QCOMPARE(names(afterLarge), (QStringList{"First", "Second"}));

    json::Document outer(s_options);
    const json::Value root = outer.parse(answer({task(5, "Outer")}));
    QCOMPARE(names(json::decode<TasksResponse>(answer({task(6, "Inner")}), s_options)), QStringList{"Inner"});
    QCOMPARE(names(TasksResponse::decode(root)), QStringList{"Outer"});
}

QTEST_GUILESS_MAIN(TestTasksResponse)
#include "tst_tasksresponse.moc"
