#include "api/datecoding.h"
#include "api/json.h"
#include "api/settings.h"
#include "support/fatalerrortrap.h"
#include "support/fixtures.h"
#include "tasks/task.h"
#include "tasks/taskpriority.h"
#include "tasks/taskprogress.h"
#include "tasks/tasksresponse.h"
#include "tasks/taskstatus.h"
#include "tasks/tasksupdateresponse.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <limits>

using namespace ravelin;
using ravelin::test::checkRoundTrips;
using ravelin::test::FatalErrorRaised;
using ravelin::test::FatalErrorTrap;
using ravelin::test::mapped;

namespace {

const QList<TaskCategoryDefinition> s_categories{{1, QStringLiteral("A")}, {2, QStringLiteral("B")}};

// Decodes a task as the root value of an answer.
struct TaskRoot
{
    TaskPtr task;
    static TaskRoot decode(const json::Value &value) { return {Task::decode(value)}; }
};

// A full server task, changed by the patch and without the removed keys.
TaskPtr decodeTask(const QJsonObject &patch = {}, const QStringList &removed = {},
                   const QList<TaskCategoryDefinition> *categories = &s_categories)
{
    QJsonObject o{
        {"id", 41},
        {"name", "Pump check"},
        {"description", "Check the pumps of hall 2"},
        {"latitude", 52.5},
        {"longitude", 13.25},
        {"ownerId", 7},
        {"ownerAssetName", "Ann"},
        {"assignedUserId", 11},
        {"updaterUserId", 12},
        {"dateScheduled", "2026-03-01T08:00:00.000+0100"},
        {"dateCreated", "2026-02-20T10:15:30.123Z"},
        {"dateUpdated", "2026-02-21T11:00:00.500+0000"},
        {"taskStatusId", 4},
        {"taskCategoryId", 2},
        {"priority", 1},
        {"itemsCount",
         QJsonArray{QJsonObject{{"itemStatusId", 1}, {"count", 3}}, QJsonObject{{"itemStatusId", 2}, {"count", 1}},
                    QJsonObject{{"itemStatusId", 3}, {"count", 4}}}},
        {"updated", true},
    };
    for (auto it = patch.begin(); it != patch.end(); ++it)
        o.insert(it.key(), it.value());
    for (const QString &key : removed)
        o.remove(key);
    const json::Options options{json::KeyDecoding::convertFromSnakeCase, json::DateDecoding::serverFormat, categories};
    return json::decode<TaskRoot>(QJsonDocument(o).toJson(QJsonDocument::Compact), options).task;
}

QDateTime utc(const char *text)
{
    return QDateTime::fromString(QString::fromLatin1(text), Qt::ISODateWithMs).toUTC();
}

constexpr int stopsTheProcess = -1;

const QList<TaskCategoryDefinition> s_answerCategories{{0, QStringLiteral("All")}, {3, QStringLiteral("Pumps")}};
const json::Options s_options{json::KeyDecoding::convertFromSnakeCase, json::DateDecoding::serverFormat,
                              &s_answerCategories};

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
    return mapped(response.data, [](const TaskPtr &task) { return task->name; });
}

} // namespace

class TestTask : public QObject
{
    Q_OBJECT

private slots:
    void decodesEveryField();
    void optionalKeys_data();
    void optionalKeys();
    void decodingErrors_data();
    void decodingErrors();
    void categoryLookup();
    void encodesUnderFieldNames();
    void statusServerIds();
    void priorityWireValuesAndRanks();
    void fromCounts_data();
    void fromCounts();
    void overflowingSumStopsTheProcess();
    void decodesTasksInServerOrder();
    void envelopeErrors_data();
    void envelopeErrors();
    void updateResponseReadsTheTaskUnderData();
    void answersInARowShareNothing();
};

void TestTask::decodesEveryField()
{
    const TaskPtr task = decodeTask();
    QCOMPARE(task->id, 41);
    QCOMPARE(task->name, "Pump check");
    QCOMPARE(task->description, "Check the pumps of hall 2");
    QCOMPARE(task->latitude, std::optional<float>(52.5f));
    QCOMPARE(task->longitude, std::optional<float>(13.25f));
    QCOMPARE(task->ownerId, 7);
    QCOMPARE(task->ownerAssetName, "Ann");
    QCOMPARE(task->assignedUserId, std::optional<qint64>(11));
    QCOMPARE(task->updaterUserId, std::optional<qint64>(12));
    QCOMPARE(task->dateScheduled, std::optional(utc("2026-03-01T07:00:00.000Z")));
    QCOMPARE(task->dateCreated, utc("2026-02-20T10:15:30.123Z"));
    QCOMPARE(task->dateUpdated, std::optional(utc("2026-02-21T11:00:00.500Z")));
    QCOMPARE(task->currentStatus, TaskStatus::in_progress);
    QCOMPARE(task->taskCategory, (TaskCategoryDefinition{2, "B"}));
    QCOMPARE(task->priority, TaskPriority::high);
    QCOMPARE(task->progress, (TaskProgress{50, 4, 3, 1}));
    QVERIFY(task->isUpdated);
    QVERIFY(task->itemList.items.isEmpty());
    QCOMPARE(task->itemList.filterData.status, ItemStatus::all);
}

void TestTask::optionalKeys_data()
{
    QTest::addColumn<QJsonObject>("patch");
    QTest::addColumn<QStringList>("removed");
    QTest::addColumn<QString>("owner");
    QTest::addColumn<bool>("isUpdated");
    QTest::addColumn<QList<bool>>("present"); // assignee, updater, scheduled date, update date
    const QJsonValue null(QJsonValue::Null);
    QTest::newRow("absent") << QJsonObject{} << QStringList{"ownerAssetName", "dateUpdated", "itemsCount", "updated"}
                            << "Unknown" << false << QList<bool>{true, true, true, false};
    QTest::newRow("null") << QJsonObject{{"ownerAssetName", null}, {"assignedUserId", null}, {"updaterUserId", null},
                                         {"dateScheduled", null},  {"dateUpdated", null},    {"itemsCount", null},
                                         {"updated", null}}
                          << QStringList{} << "Unknown" << false << QList<bool>{false, false, false, false};
    QTest::newRow("empty owner, not updated, no counts")
        << QJsonObject{{"ownerAssetName", ""}, {"updated", false}, {"itemsCount", QJsonArray{}}} << QStringList{} << ""
        << false << QList<bool>{true, true, true, true};
    // "isUpdated" and "progress" in the answer are never read.
    QTest::newRow("local names are not keys")
        << QJsonObject{{"isUpdated", true},
                       {"itemsCount", QJsonArray{}},
                       {"progress", QJsonObject{{"total", 80}, {"open", 1}, {"ok", 4}, {"nok", 0}}}}
        << QStringList{"updated"} << "Ann" << false << QList<bool>{true, true, true, true};
}

void TestTask::optionalKeys()
{
    QFETCH(QJsonObject, patch);
    QFETCH(QStringList, removed);
    const TaskPtr task = decodeTask(patch, removed);
    QTEST(task->ownerAssetName, "owner");
    QTEST(task->isUpdated, "isUpdated");
    QCOMPARE(task->progress, TaskProgress{});
    QTEST((QList<bool>{task->assignedUserId.has_value(), task->updaterUserId.has_value(),
                       task->dateScheduled.has_value(), task->dateUpdated.has_value()}),
          "present");
}

void TestTask::decodingErrors_data()
{
    QTest::addColumn<QJsonObject>("patch");
    QTest::addColumn<QStringList>("removed");
    QTest::addColumn<int>("kind"); // a DecodingError kind, or stopsTheProcess
    const int keyNotFound = int(json::DecodingError::Kind::keyNotFound);
    const int valueNotFound = int(json::DecodingError::Kind::valueNotFound);
    const int typeMismatch = int(json::DecodingError::Kind::typeMismatch);
    const int corrupted = int(json::DecodingError::Kind::dataCorrupted);
    for (const char *key :
         {"id", "name", "description", "latitude", "longitude", "ownerId", "assignedUserId", "updaterUserId",
          "dateScheduled", "dateCreated", "taskStatusId", "taskCategoryId", "priority"})
        QTest::addRow("%s missing", key) << QJsonObject{} << QStringList{key} << keyNotFound;
    for (const char *key : {"name", "latitude", "dateCreated"})
        QTest::addRow("%s null", key) << QJsonObject{{key, QJsonValue::Null}} << QStringList{} << valueNotFound;
    QTest::newRow("id as text") << QJsonObject{{"id", "41"}} << QStringList{} << typeMismatch;
    QTest::newRow("updated as number") << QJsonObject{{"updated", 1}} << QStringList{} << typeMismatch;
    QTest::newRow("itemsCount entry without count")
        << QJsonObject{{"itemsCount", QJsonArray{QJsonObject{{"itemStatusId", 1}}}}} << QStringList{} << keyNotFound;
    QTest::newRow("date without zone") << QJsonObject{{"dateCreated", "2026-02-20T10:15:30.123"}} << QStringList{}
                                       << corrupted;
    QTest::newRow("latitude beyond Float") << QJsonObject{{"latitude", 1e300}} << QStringList{} << corrupted;
    QTest::newRow("status 7") << QJsonObject{{"taskStatusId", 7}} << QStringList{} << stopsTheProcess;
    QTest::newRow("priority 5") << QJsonObject{{"priority", 5}} << QStringList{} << stopsTheProcess;
    // The first failure in reading order wins: "name" before "taskStatusId" before "priority".
    QTest::newRow("missing name before bad priority")
        << QJsonObject{{"priority", 9}} << QStringList{"name"} << keyNotFound;
    QTest::newRow("bad status before missing priority")
        << QJsonObject{{"taskStatusId", 0}} << QStringList{"priority"} << stopsTheProcess;
}

void TestTask::decodingErrors()
{
    QFETCH(QJsonObject, patch);
    QFETCH(QStringList, removed);
    QFETCH(int, kind);
    FatalErrorTrap trap;
    try {
        (void)decodeTask(patch, removed);
        QFAIL("decoding succeeded");
    } catch (const json::DecodingError &error) {
        QCOMPARE(int(error.kind()), kind);
    } catch (const FatalErrorRaised &) {
        QCOMPARE(kind, stopsTheProcess);
    }
}

void TestTask::categoryLookup()
{
    // An unknown id falls back to the first category.
    QCOMPARE(decodeTask(QJsonObject{{"taskCategoryId", 99}})->taskCategory, (TaskCategoryDefinition{1, "A"}));

    // Without a snapshot in the options the session's settings are used.
    const Settings previous = Settings::current();
    Settings settings = Settings::defaults();
    settings.taskCategory.append({5, "Valves"});
    Settings::setCurrent(settings);
    const TaskPtr known = decodeTask(QJsonObject{{"taskCategoryId", 5}}, {}, nullptr);
    const TaskPtr unknown = decodeTask(QJsonObject{{"taskCategoryId", 6}}, {}, nullptr);
    const TaskPtr snapshot = decodeTask(QJsonObject{{"taskCategoryId", 5}});
    Settings::setCurrent(previous);
    QCOMPARE(known->taskCategory, (TaskCategoryDefinition{5, "Valves"}));
    QCOMPARE(unknown->taskCategory, (TaskCategoryDefinition{0, "All"}));
    QCOMPARE(snapshot->taskCategory, (TaskCategoryDefinition{1, "A"}));

    const QList<TaskCategoryDefinition> none;
    FatalErrorTrap trap;
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)decodeTask({}, {}, &none));
}

void TestTask::encodesUnderFieldNames()
{
    const QJsonObject o = decodeTask()->encode();
    QCOMPARE(o["priority"].toString(), "High");
    QCOMPARE(o["currentStatus"].toString(), "In Progress");
    QCOMPARE(o["isUpdated"].toBool(), true);
    QCOMPARE(o["taskCategory"].toObject(), (QJsonObject{{"id", 2}, {"name", "B"}}));
    QCOMPARE(o["progress"].toObject(), (QJsonObject{{"total", 50}, {"open", 4}, {"ok", 3}, {"nok", 1}}));
    QCOMPARE(o["itemList"].toObject()["filterData"].toObject()["status"].toString(), "All");
    QCOMPARE(parseServerDate(o["dateCreated"].toString().toStdString()),
             std::optional(utc("2026-02-20T10:15:30.123Z")));

    // Absent values are left out; a fresh task has the defaults.
    const QJsonObject bare = Task{}.encode();
    for (const char *key : {"latitude", "longitude", "assignedUserId", "updaterUserId", "dateScheduled", "dateUpdated"})
        QVERIFY2(!bare.contains(QLatin1String(key)), key);
    QCOMPARE(bare["currentStatus"].toString(), "Unassigned");
}

// Texts and ids round-trip, and texts match exactly (case and blanks count,
// "Complete" is not "Completed"); which id is which status is checked where the
// server's tasks are shown (tst_dashboardvc, tst_dashboardvm).
void TestTask::statusServerIds()
{
    checkRoundTrips(TaskStatuses::allCases(), 6, &TaskStatuses::serverId, &TaskStatuses::fromServerId,
                    &TaskStatuses::rawValue, &TaskStatuses::fromRawValue);
    FatalErrorTrap trap;
    // The last one would be id 1 if cut down to 32 bits.
    for (qint64 outOfRange : {qint64(0), qint64(7), (qint64(1) << 32) + 1})
        QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)TaskStatuses::fromServerId(outOfRange));
}

// The wire values are checked in the query (tst_apidata queryItems), the ranks in sorting (tst_dashboardvm
// sortedTasks).
void TestTask::priorityWireValuesAndRanks()
{
    checkRoundTrips(TaskPriorities::allCases(), 5, &TaskPriorities::wireValue, &TaskPriorities::fromWireValue,
                    &TaskPriorities::rawValue, &TaskPriorities::fromRawValue);
    FatalErrorTrap trap;
    for (qint64 outOfRange : {qint64(-1), qint64(5)})
        QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)TaskPriorities::fromWireValue(outOfRange));
}

void TestTask::fromCounts_data()
{
    QTest::addColumn<QList<ItemsCount>>("counts");
    QTest::addColumn<TaskProgress>("expected");
    // expected: total, open, ok, nok
    QTest::newRow("no entries") << QList<ItemsCount>{} << TaskProgress{0, 0, 0, 0};
    QTest::newRow("open first") << QList<ItemsCount>{{3, 4}, {2, 1}, {1, 3}} << TaskProgress{50, 4, 3, 1};
    QTest::newRow("only open") << QList<ItemsCount>{{3, 7}} << TaskProgress{0, 7, 0, 0};
    QTest::newRow("nothing open") << QList<ItemsCount>{{1, 2}, {2, 5}} << TaskProgress{100, 0, 2, 5};
    QTest::newRow("percentage truncates") << QList<ItemsCount>{{1, 199}, {3, 1}} << TaskProgress{99, 1, 199, 0};
    // Only the first entry per status is kept, but every entry counts in the sum.
    QTest::newRow("duplicates") << QList<ItemsCount>{{1, 2}, {3, 2}, {1, 4}, {3, 4}} << TaskProgress{83, 2, 2, 0};
    // Ids of no kept status (4 is "all", 9 is unknown) still count in the sum.
    QTest::newRow("other ids") << QList<ItemsCount>{{3, 1}, {4, 1}, {9, 2}} << TaskProgress{75, 1, 0, 0};
}

void TestTask::fromCounts()
{
    QFETCH(QList<ItemsCount>, counts);
    QTEST(TaskProgress::fromCounts(counts), "expected");
}

void TestTask::overflowingSumStopsTheProcess()
{
    constexpr qint64 max = std::numeric_limits<qint64>::max();
    FatalErrorTrap trap;
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)TaskProgress::fromCounts({{1, max}, {3, 1}}));
    // The sum fits, the percentage arithmetic does not.
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)TaskProgress::fromCounts({{1, max / 10}}));
}

void TestTask::decodesTasksInServerOrder()
{
    // That strings taken from an answer outlive it: tst_json stringsOutliveTheirAnswer.
    const auto r = json::decode<TasksResponse>(answer({task(9, "Valves"), task(4, "Meters")}), s_options);
    QVERIFY(r.success);
    QCOMPARE(names(r), (QStringList{"Valves", "Meters"}));
    QCOMPARE(r.data.at(1)->taskCategory, (TaskCategoryDefinition{3, "Pumps"}));

    const auto empty = json::decode<TasksResponse>(answer({}, false), s_options);
    QVERIFY(!empty.success);
    QVERIFY(empty.data.isEmpty());
}

void TestTask::envelopeErrors_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("no success") << QByteArray(R"({"data":[]})");
    QTest::newRow("no data") << QByteArray(R"({"success":true})");
    QTest::newRow("data is an object") << QByteArray("{\"success\":true,\"data\":" + task(1) + "}");
    QTest::newRow("one bad task fails all") << answer({task(1), "{\"id\":2}"});
}

void TestTask::envelopeErrors()
{
    QFETCH(QByteArray, body);
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)json::decode<TasksResponse>(body, s_options));
}

void TestTask::updateResponseReadsTheTaskUnderData()
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
void TestTask::answersInARowShareNothing()
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

QTEST_GUILESS_MAIN(TestTask)
#include "tst_task.moc"
