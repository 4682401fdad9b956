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

QTEST_GUILESS_MAIN(TestTask)
#include "tst_task.moc"
