#include "api/datecoding.h"
#include "api/json.h"
#include "api/settings.h"
#include "support/fatalerrortrap.h"
#include "tasks/task.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace ravelin;
using ravelin::test::FatalErrorRaised;
using ravelin::test::FatalErrorTrap;

namespace {

const QList<TaskCategoryDefinition> s_categories{{1, QStringLiteral("A")}, {2, QStringLiteral("B")}};

json::Options serverOptions(const QList<TaskCategoryDefinition> *categories = &s_categories)
{
    return json::Options{json::KeyDecoding::convertFromSnakeCase, json::DateDecoding::serverFormat, categories};
}

// Decodes a task as the root value of an answer.
struct TaskRoot
{
    TaskPtr task;
    static TaskRoot decode(const json::Value &value) { return {Task::decode(value)}; }
};

QJsonObject fullTask()
{
    return QJsonObject{
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
        {"itemsCount", QJsonArray{QJsonObject{{"itemStatusId", 1}, {"count", 3}},
                                  QJsonObject{{"itemStatusId", 2}, {"count", 1}},
                                  QJsonObject{{"itemStatusId", 3}, {"count", 4}}}},
        {"updated", true},
    };
}

QByteArray taskBytes(const QJsonObject &patch = {}, const QStringList &removed = {})
{
    QJsonObject o = fullTask();
    for (auto it = patch.begin(); it != patch.end(); ++it)
        o.insert(it.key(), it.value());
    for (const QString &key : removed)
        o.remove(key);
    return QJsonDocument(o).toJson(QJsonDocument::Compact);
}

TaskPtr decodeTask(const QJsonObject &patch = {}, const QStringList &removed = {},
                   const json::Options &options = serverOptions())
{
    return json::decode<TaskRoot>(taskBytes(patch, removed), options).task;
}

QDateTime utc(const char *text)
{
    return QDateTime::fromString(QString::fromLatin1(text), Qt::ISODateWithMs).toUTC();
}

} // namespace

class TestTask : public QObject
{
    Q_OBJECT

private slots:
    void decodesEveryField();
    void ownerAssetName_data();
    void ownerAssetName();
    void progressFromItemsCount_data();
    void progressFromItemsCount();
    void updatedFlag_data();
    void updatedFlag();
    void optionalValues_data();
    void optionalValues();
    void statusAndPriority_data();
    void statusAndPriority();
    void outOfRangeStopsTheProcess_data();
    void outOfRangeStopsTheProcess();
    void decodingErrors_data();
    void decodingErrors();
    void firstFailureWins();
    void categoryLookup_data();
    void categoryLookup();
    void categoryFromSessionSettings();
    void emptyCategoryListStopsTheProcess();
    void encodesUnderFieldNames();
    void encodingLeavesOutAbsentValues();
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

void TestTask::ownerAssetName_data()
{
    QTest::addColumn<QJsonObject>("patch");
    QTest::addColumn<QStringList>("removed");
    QTest::addColumn<QString>("expected");
    QTest::newRow("present") << QJsonObject{{"ownerAssetName", "Bob"}} << QStringList{} << "Bob";
    QTest::newRow("absent") << QJsonObject{} << QStringList{"ownerAssetName"} << "Unknown";
    QTest::newRow("null") << QJsonObject{{"ownerAssetName", QJsonValue::Null}} << QStringList{} << "Unknown";
    QTest::newRow("empty") << QJsonObject{{"ownerAssetName", ""}} << QStringList{} << "";
}

void TestTask::ownerAssetName()
{
    QFETCH(QJsonObject, patch);
    QFETCH(QStringList, removed);
    QFETCH(QString, expected);
    QCOMPARE(decodeTask(patch, removed)->ownerAssetName, expected);
}

void TestTask::progressFromItemsCount_data()
{
    QTest::addColumn<QJsonObject>("patch");
    QTest::addColumn<QStringList>("removed");
    QTest::addColumn<QList<qint64>>("totalOpenOkNok");
    auto counts = [](std::initializer_list<std::pair<int, int>> entries) {
        QJsonArray a;
        for (auto [status, count] : entries)
            a.append(QJsonObject{{"itemStatusId", status}, {"count", count}});
        return QJsonObject{{"itemsCount", a}};
    };
    QTest::newRow("absent") << QJsonObject{} << QStringList{"itemsCount"} << QList<qint64>{0, 0, 0, 0};
    QTest::newRow("null") << QJsonObject{{"itemsCount", QJsonValue::Null}} << QStringList{} << QList<qint64>{0, 0, 0, 0};
    QTest::newRow("empty") << counts({}) << QStringList{} << QList<qint64>{0, 0, 0, 0};
    QTest::newRow("two done two open") << counts({{1, 2}, {3, 2}}) << QStringList{} << QList<qint64>{50, 2, 2, 0};
    QTest::newRow("only open") << counts({{3, 5}}) << QStringList{} << QList<qint64>{0, 5, 0, 0};
    QTest::newRow("none open") << counts({{1, 4}, {2, 1}}) << QStringList{} << QList<qint64>{100, 0, 4, 1};
    // "progress" in the answer is never read.
    QTest::newRow("progress key ignored")
        << QJsonObject{{"itemsCount", QJsonArray{}}, {"progress", QJsonObject{{"total", 80}, {"open", 1}, {"ok", 4}, {"nok", 0}}}}
        << QStringList{} << QList<qint64>{0, 0, 0, 0};
}

void TestTask::progressFromItemsCount()
{
    QFETCH(QJsonObject, patch);
    QFETCH(QStringList, removed);
    QFETCH(QList<qint64>, totalOpenOkNok);
    const TaskProgress p = decodeTask(patch, removed)->progress;
    QCOMPARE((QList<qint64>{p.total, p.open, p.ok, p.nok}), totalOpenOkNok);
}

void TestTask::updatedFlag_data()
{
    QTest::addColumn<QJsonObject>("patch");
    QTest::addColumn<QStringList>("removed");
    QTest::addColumn<bool>("expected");
    QTest::newRow("updated true") << QJsonObject{{"updated", true}} << QStringList{} << true;
    QTest::newRow("updated false") << QJsonObject{{"updated", false}} << QStringList{} << false;
    QTest::newRow("absent") << QJsonObject{} << QStringList{"updated"} << false;
    QTest::newRow("null") << QJsonObject{{"updated", QJsonValue::Null}} << QStringList{} << false;
    QTest::newRow("isUpdated is not the key") << QJsonObject{{"isUpdated", true}} << QStringList{"updated"} << false;
}

void TestTask::updatedFlag()
{
    QFETCH(QJsonObject, patch);
    QFETCH(QStringList, removed);
    QFETCH(bool, expected);
    QCOMPARE(decodeTask(patch, removed)->isUpdated, expected);
}

void TestTask::optionalValues_data()
{
    QTest::addColumn<QJsonObject>("patch");
    QTest::addColumn<QStringList>("removed");
    QTest::addColumn<bool>("hasAssignee");
    QTest::addColumn<bool>("hasUpdater");
    QTest::addColumn<bool>("hasScheduled");
    QTest::addColumn<bool>("hasUpdateDate");
    QTest::newRow("all present") << QJsonObject{} << QStringList{} << true << true << true << true;
    QTest::newRow("nulls") << QJsonObject{{"assignedUserId", QJsonValue::Null}, {"updaterUserId", QJsonValue::Null},
                                          {"dateScheduled", QJsonValue::Null}, {"dateUpdated", QJsonValue::Null}}
                           << QStringList{} << false << false << false << false;
    QTest::newRow("dateUpdated absent") << QJsonObject{} << QStringList{"dateUpdated"} << true << true << true << false;
}

void TestTask::optionalValues()
{
    QFETCH(QJsonObject, patch);
    QFETCH(QStringList, removed);
    const TaskPtr task = decodeTask(patch, removed);
    QTEST(task->assignedUserId.has_value(), "hasAssignee");
    QTEST(task->updaterUserId.has_value(), "hasUpdater");
    QTEST(task->dateScheduled.has_value(), "hasScheduled");
    QTEST(task->dateUpdated.has_value(), "hasUpdateDate");
}

void TestTask::statusAndPriority_data()
{
    QTest::addColumn<int>("statusId");
    QTest::addColumn<int>("priority");
    QTest::addColumn<QString>("statusText");
    QTest::addColumn<QString>("priorityText");
    QTest::newRow("lowest ids") << 1 << 0 << "Unassigned" << "Highest";
    QTest::newRow("assigned, medium") << 2 << 2 << "Assigned" << "Medium";
    QTest::newRow("in progress, low") << 4 << 3 << "In Progress" << "Low";
    QTest::newRow("highest ids") << 6 << 4 << "Completed" << "All";
}

void TestTask::statusAndPriority()
{
    QFETCH(int, statusId);
    QFETCH(int, priority);
    const TaskPtr task = decodeTask(QJsonObject{{"taskStatusId", statusId}, {"priority", priority}});
    QTEST(TaskStatuses::rawValue(task->currentStatus), "statusText");
    QTEST(TaskPriorities::rawValue(task->priority), "priorityText");
}

void TestTask::outOfRangeStopsTheProcess_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("value");
    QTest::newRow("status 0") << "taskStatusId" << 0;
    QTest::newRow("status 7") << "taskStatusId" << 7;
    QTest::newRow("priority -1") << "priority" << -1;
    QTest::newRow("priority 5") << "priority" << 5;
}

void TestTask::outOfRangeStopsTheProcess()
{
    QFETCH(QString, key);
    QFETCH(int, value);
    FatalErrorTrap trap;
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)decodeTask(QJsonObject{{key, value}}));
}

void TestTask::decodingErrors_data()
{
    QTest::addColumn<QJsonObject>("patch");
    QTest::addColumn<QStringList>("removed");
    QTest::addColumn<int>("kind");
    const int keyNotFound = int(json::DecodingError::Kind::keyNotFound);
    const int valueNotFound = int(json::DecodingError::Kind::valueNotFound);
    const int typeMismatch = int(json::DecodingError::Kind::typeMismatch);
    const int corrupted = int(json::DecodingError::Kind::dataCorrupted);
    for (const char *key : {"id", "name", "description", "latitude", "longitude", "ownerId", "assignedUserId",
                            "updaterUserId", "dateScheduled", "dateCreated", "taskStatusId", "taskCategoryId", "priority"})
        QTest::addRow("%s missing", key) << QJsonObject{} << QStringList{key} << keyNotFound;
    QTest::newRow("name null") << QJsonObject{{"name", QJsonValue::Null}} << QStringList{} << valueNotFound;
    QTest::newRow("latitude null") << QJsonObject{{"latitude", QJsonValue::Null}} << QStringList{} << valueNotFound;
    QTest::newRow("dateCreated null") << QJsonObject{{"dateCreated", QJsonValue::Null}} << QStringList{} << valueNotFound;
    QTest::newRow("id as text") << QJsonObject{{"id", "41"}} << QStringList{} << typeMismatch;
    QTest::newRow("updated as number") << QJsonObject{{"updated", 1}} << QStringList{} << typeMismatch;
    QTest::newRow("itemsCount entry without count")
        << QJsonObject{{"itemsCount", QJsonArray{QJsonObject{{"itemStatusId", 1}}}}} << QStringList{} << keyNotFound;
    QTest::newRow("date without zone") << QJsonObject{{"dateCreated", "2026-02-20T10:15:30.123"}} << QStringList{}
                                       << corrupted;
    QTest::newRow("latitude beyond Float") << QJsonObject{{"latitude", 1e300}} << QStringList{} << corrupted;
}

void TestTask::decodingErrors()
{
    QFETCH(QJsonObject, patch);
    QFETCH(QStringList, removed);
    QFETCH(int, kind);
    try {
        (void)decodeTask(patch, removed);
        QFAIL("decoding succeeded");
    } catch (const json::DecodingError &error) {
        QCOMPARE(int(error.kind()), kind);
    }
}

void TestTask::firstFailureWins()
{
    FatalErrorTrap trap;
    // "name" is read before "priority": the missing key is reported, the bad
    // priority is never reached.
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)decodeTask(QJsonObject{{"priority", 9}}, {"name"}));
    // "taskStatusId" is read before "priority": the bad status stops the process
    // before the missing priority is noticed.
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)decodeTask(QJsonObject{{"taskStatusId", 0}}, {"priority"}));
}

void TestTask::categoryLookup_data()
{
    QTest::addColumn<int>("categoryId");
    QTest::addColumn<qint64>("expectedId");
    QTest::addColumn<QString>("expectedName");
    QTest::newRow("first") << 1 << qint64(1) << "A";
    QTest::newRow("second") << 2 << qint64(2) << "B";
    QTest::newRow("unknown falls back to the first") << 99 << qint64(1) << "A";
    QTest::newRow("zero is unknown here") << 0 << qint64(1) << "A";
}

void TestTask::categoryLookup()
{
    QFETCH(int, categoryId);
    const TaskPtr task = decodeTask(QJsonObject{{"taskCategoryId", categoryId}});
    QTEST(task->taskCategory.id, "expectedId");
    QTEST(task->taskCategory.name, "expectedName");
}

void TestTask::categoryFromSessionSettings()
{
    const Settings previous = Settings::current();
    Settings settings = Settings::defaults();
    settings.taskCategory.append({5, "Valves"});
    Settings::setCurrent(settings);

    const TaskPtr known = decodeTask(QJsonObject{{"taskCategoryId", 5}}, {}, serverOptions(nullptr));
    const TaskPtr unknown = decodeTask(QJsonObject{{"taskCategoryId", 6}}, {}, serverOptions(nullptr));
    // A snapshot handed in with the options wins over the session's settings.
    const TaskPtr snapshot = decodeTask(QJsonObject{{"taskCategoryId", 5}});
    Settings::setCurrent(previous);

    QCOMPARE(known->taskCategory, (TaskCategoryDefinition{5, "Valves"}));
    QCOMPARE(unknown->taskCategory, (TaskCategoryDefinition{0, "All"}));
    QCOMPARE(snapshot->taskCategory, (TaskCategoryDefinition{1, "A"}));
}

void TestTask::emptyCategoryListStopsTheProcess()
{
    const QList<TaskCategoryDefinition> none;
    FatalErrorTrap trap;
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)decodeTask({}, {}, serverOptions(&none)));
}

void TestTask::encodesUnderFieldNames()
{
    const TaskPtr task = decodeTask();
    const QJsonObject o = task->encode();
    QStringList expectedKeys{"id", "priority", "name", "description", "latitude", "longitude", "currentStatus",
                             "ownerAssetName", "ownerId", "assignedUserId", "updaterUserId", "dateScheduled",
                             "taskCategory", "dateCreated", "dateUpdated", "progress", "itemList", "isUpdated"};
    expectedKeys.sort();
    QCOMPARE(o.keys(), expectedKeys);
    QCOMPARE(o["priority"].toString(), "High");
    QCOMPARE(o["currentStatus"].toString(), "In Progress");
    QCOMPARE(o["isUpdated"].toBool(), true);
    QCOMPARE(o["latitude"].toDouble(), 52.5);
    QCOMPARE(o["taskCategory"].toObject(), (QJsonObject{{"id", 2}, {"name", "B"}}));
    QCOMPARE(o["progress"].toObject(), (QJsonObject{{"total", 50}, {"open", 4}, {"ok", 3}, {"nok", 1}}));
    QCOMPARE(o["itemList"].toObject()["filterData"].toObject()["status"].toString(), "All");
    QCOMPARE(parseServerDate(o["dateCreated"].toString().toStdString()), std::optional(utc("2026-02-20T10:15:30.123Z")));
}

void TestTask::encodingLeavesOutAbsentValues()
{
    Task task;
    task.name = "Bare";
    const QJsonObject o = task.encode();
    for (const char *key : {"latitude", "longitude", "assignedUserId", "updaterUserId", "dateScheduled", "dateUpdated"})
        QVERIFY2(!o.contains(QLatin1String(key)), key);
    QCOMPARE(o["ownerAssetName"].toString(), "Unknown");
    QCOMPARE(o["isUpdated"].toBool(true), false);
    QCOMPARE(o["currentStatus"].toString(), "Unassigned");
}

QTEST_GUILESS_MAIN(TestTask)
#include "tst_task.moc"
