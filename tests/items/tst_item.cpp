#include "api/json.h"
#include "items/item.h"
#include "items/itemlist.h"
#include "items/itemlistmodel.h"
#include "items/itemsresponse.h"
#include "items/itemsupdatepayload.h"
#include "items/itemsupdateresponse.h"
#include "items/taskitemsmodel.h"
#include "support/fatalerrortrap.h"
#include "support/fixtures.h"

#include <QAbstractItemModelTester>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>

using namespace ravelin;
using ravelin::test::checkRoundTrips;
using ravelin::test::FatalErrorRaised;
using ravelin::test::FatalErrorTrap;
using ravelin::test::mapped;
using ravelin::test::rowRanges;

namespace {

// Decodes an items answer holding one full item, changed by the patch and without the removed keys.
ItemPtr decodeItem(const QJsonObject &patch = {}, const QStringList &removed = {})
{
    QJsonObject item{
        {"id", 301},
        {"taskId", 41},
        {"name", "Valve 3"},
        {"details", "Close and check the seal"},
        {"isAudit", "0"},
        {"dateCreated", "2026-02-20T10:15:30.123+0000"},
        {"dateUpdated", "2026-02-21T09:00:00.000+0100"},
        {"itemStatusId", 3},
        {"qrCode", "QR-301"},
    };
    for (auto it = patch.begin(); it != patch.end(); ++it)
        item.insert(it.key(), it.value());
    for (const QString &key : removed)
        item.remove(key);
    const QByteArray body = QJsonDocument(QJsonObject{{"success", true}, {"data", QJsonArray{item}}}).toJson();
    const json::Options options{json::KeyDecoding::convertFromSnakeCase, json::DateDecoding::serverFormat, nullptr};
    const auto response = json::decode<ItemsResponse>(body, options);
    if (response.data.size() != 1)
        throw std::runtime_error("expected one item");
    return response.data.first();
}

// Items with ids 1, 2, 3, ... and the given statuses, in order.
ItemList makeList(const QList<ItemStatus> &statuses, ItemStatus filter)
{
    ItemList list;
    for (ItemStatus s : statuses) {
        auto item = std::make_shared<Item>();
        item->id = list.items.size() + 1;
        item->status = s;
        list.items.append(item);
    }
    list.filterData.status = filter;
    return list;
}

QList<qint64> ids(const QList<ItemPtr> &items)
{
    return mapped(items, [](const ItemPtr &item) { return item->id; });
}

// "1 2* 3": items 1 to 3, open, item 2 completed.
QList<ItemPtr> items(const QString &rows)
{
    QList<ItemPtr> out;
    for (QString entry : rows.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        auto item = std::make_shared<Item>();
        item->status = entry.endsWith(QLatin1Char('*')) ? ItemStatus::ok : ItemStatus::open;
        entry.remove(QLatin1Char('*'));
        item->id = entry.toLongLong();
        item->name = QStringLiteral("Item %1").arg(item->id);
        out.append(item);
    }
    return out;
}

} // namespace

class TestItem : public QObject
{
    Q_OBJECT

private slots:
    void decodesEveryField();
    void statuses();
    void auditFlagFromText_data();
    void auditFlagFromText();
    void optionalValues_data();
    void optionalValues();
    void decodingErrors_data();
    void decodingErrors();
    void encodesTheLocalForm();
    void wireForm_data();
    void wireForm();
    void decodesTheUpdateAnswer();
    void filteredItems_data();
    void filteredItems();
    void filteredItemsFollowTheItems();
    void codesItemsAndFilter();
    void answerTakenRowByRow_data();
    void answerTakenRowByRow();
};

void TestItem::decodesEveryField()
{
    const ItemPtr item = decodeItem();
    QCOMPARE(item->id, 301);
    QCOMPARE(item->taskId, 41);
    QCOMPARE(item->name, "Valve 3");
    QCOMPARE(item->details, "Close and check the seal");
    QVERIFY(!item->isAudit);
    QCOMPARE(item->dateCreated, QDateTime(QDate(2026, 2, 20), QTime(10, 15, 30, 123), Qt::UTC));
    QCOMPARE(item->dateUpdated, std::optional(QDateTime(QDate(2026, 2, 21), QTime(8, 0), Qt::UTC)));
    QCOMPARE(item->status, ItemStatus::open);
    QCOMPARE(item->qrCode, std::optional<QString>("QR-301"));
    QVERIFY(!item->isQRMapped);
}

// Ids, segments and texts round-trip, and ids and segments out of range stop the
// process; which server id is which status is checked where items are filtered (tst_itemsvm).
void TestItem::statuses()
{
    const auto decodedStatus = [](int serverId) { return decodeItem(QJsonObject{{"itemStatusId", serverId}})->status; };
    checkRoundTrips(ItemStatuses::allCases(), 4, &ItemStatuses::serverId, decodedStatus, &ItemStatuses::rawValue,
                    &ItemStatuses::fromRawValue);
    for (const ItemStatus status : ItemStatuses::allCases())
        QCOMPARE(ItemStatuses::fromSegmentIndex(ItemStatuses::segmentIndex(status)), status);
    FatalErrorTrap trap;
    for (int serverId : {0, 5})
        QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)decodedStatus(serverId));
    // -1: no segment selected.
    for (qint64 segment : {-1, 4})
        QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)ItemStatuses::fromSegmentIndex(segment));
}

void TestItem::auditFlagFromText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("expected");
    QTest::newRow("0") << "0" << false;
    QTest::newRow("00") << "00" << true;
    QTest::newRow("empty") << "" << true;
    QTest::newRow("0 with space") << " 0" << true;
}

void TestItem::auditFlagFromText()
{
    QFETCH(QString, text);
    QTEST(decodeItem(QJsonObject{{"isAudit", text}})->isAudit, "expected");
}

void TestItem::optionalValues_data()
{
    QTest::addColumn<QJsonObject>("patch");
    QTest::addColumn<QStringList>("removed");
    QTest::addColumn<bool>("hasQrCode");
    QTest::addColumn<bool>("hasUpdateDate");
    QTest::newRow("absent") << QJsonObject{} << QStringList{"qrCode", "dateUpdated"} << false << false;
    QTest::newRow("null") << QJsonObject{{"qrCode", QJsonValue::Null}, {"dateUpdated", QJsonValue::Null}}
                          << QStringList{} << false << false;
    QTest::newRow("empty code is a code") << QJsonObject{{"qrCode", ""}} << QStringList{} << true << true;
}

void TestItem::optionalValues()
{
    QFETCH(QJsonObject, patch);
    QFETCH(QStringList, removed);
    const ItemPtr item = decodeItem(patch, removed);
    QTEST(item->qrCode.has_value(), "hasQrCode");
    QTEST(item->dateUpdated.has_value(), "hasUpdateDate");
}

void TestItem::decodingErrors_data()
{
    QTest::addColumn<QJsonObject>("patch");
    QTest::addColumn<QStringList>("removed");
    for (const char *key : {"id", "taskId", "name", "details", "isAudit", "dateCreated", "itemStatusId"})
        QTest::addRow("%s missing", key) << QJsonObject{} << QStringList{key};
    QTest::newRow("isAudit as boolean") << QJsonObject{{"isAudit", false}} << QStringList{};
    QTest::newRow("qrCode as number") << QJsonObject{{"qrCode", 301}} << QStringList{};
    QTest::newRow("dateUpdated not a date") << QJsonObject{{"dateUpdated", "yesterday"}} << QStringList{};
}

void TestItem::decodingErrors()
{
    QFETCH(QJsonObject, patch);
    QFETCH(QStringList, removed);
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)decodeItem(patch, removed));
}

void TestItem::encodesTheLocalForm()
{
    ItemPtr item = decodeItem(QJsonObject{{"isAudit", "1"}, {"itemStatusId", 2}});
    item->isQRMapped = true;
    const QJsonObject o = item->encode();
    QCOMPARE(o["status"].toString(), "Incidents");
    QCOMPARE(o["isAudit"], QJsonValue(true));
    QCOMPARE(o["isQRMapped"], QJsonValue(true));
    QCOMPARE(o["qrCode"].toString(), "QR-301");

    // Absent values are left out.
    const QJsonObject bare = decodeItem({}, {"qrCode", "dateUpdated"})->encode();
    QVERIFY(!bare.contains("qrCode"));
    QVERIFY(!bare.contains("dateUpdated"));
    QCOMPARE(bare["isAudit"], QJsonValue(false));
    QCOMPARE(bare["status"].toString(), "Open");
}

void TestItem::wireForm_data()
{
    QTest::addColumn<QList<qint64>>("itemIds");
    QTest::addColumn<ItemStatus>("status");
    QTest::addColumn<QString>("note");
    QTest::addColumn<QString>("mediaPath"); // empty: no photo
    QTest::addColumn<QJsonArray>("expected"); // under "items"

    auto entry = [](qint64 id, int status, QJsonValue text, QJsonValue media) {
        return QJsonObject{{"id", id}, {"item_status_id", status}, {"text", text}, {"media_path", media}};
    };
    const QJsonValue null(QJsonValue::Null);
    const QString photo("files/7_1_photo_3.jpg");
    QTest::newRow("no note, no photo") << QList<qint64>{301} << ItemStatus::ok << QString() << QString()
                                       << QJsonArray{entry(301, 1, null, null)};
    QTest::newRow("empty note is null") << QList<qint64>{301} << ItemStatus::ok << QString("") << QString()
                                        << QJsonArray{entry(301, 1, null, null)};
    QTest::newRow("a blank note is not empty")
        << QList<qint64>{8} << ItemStatus::ok << QString(" ") << QString() << QJsonArray{entry(8, 1, " ", null)};
    QTest::newRow("incident with note and photo, every item the same")
        << QList<qint64>{5, 3, 9} << ItemStatus::nok << QString("Seal broken") << photo
        << QJsonArray{entry(5, 2, "Seal broken", photo), entry(3, 2, "Seal broken", photo),
                      entry(9, 2, "Seal broken", photo)};
    QTest::newRow("no items") << QList<qint64>{} << ItemStatus::ok << QString("x") << QString() << QJsonArray{};
}

void TestItem::wireForm()
{
    QFETCH(QList<qint64>, itemIds);
    QFETCH(ItemStatus, status);
    QFETCH(QString, note);
    QFETCH(QString, mediaPath);
    QFETCH(QJsonArray, expected);
    QList<ItemPtr> items;
    for (qint64 id : itemIds) {
        items.append(std::make_shared<Item>());
        items.last()->id = id;
    }
    const auto payload = ItemsUpdatePayload::make(41, 7, items, status, note,
                                                  mediaPath.isEmpty() ? std::nullopt : std::optional(mediaPath));
    const QJsonObject body{{"task_id", 41}, {"updater_user_id", 7}, {"items", expected}};
    QCOMPARE(payload.encode(), body);
    // The request body is the compact form, nulls written out.
    QCOMPARE(payload.toJson(), QJsonDocument(body).toJson(QJsonDocument::Compact));
}

void TestItem::decodesTheUpdateAnswer()
{
    const auto decode = [](const QByteArray &body) {
        return json::decode<ItemsUpdateResponse>(
            body, {json::KeyDecoding::convertFromSnakeCase, json::DateDecoding::serverFormat, nullptr});
    };
    // Only "success" is kept: the echoed data is not read, not even its dates.
    QVERIFY(decode(R"({"success":true,"data":{"task_id":41,"updater_user_id":7,"items":[{"id":301,
        "item_status_id":1,"updated":true,"date_updated":"not a date"}]}})")
                .success);
    QVERIFY(!decode(R"({"success":false})").success);
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)decode(R"({"data":{}})"));
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)decode(R"({"success":"true"})"));
}

void TestItem::filteredItems_data()
{
    QTest::addColumn<QList<ItemStatus>>("statuses");
    QTest::addColumn<ItemStatus>("filter");
    QTest::addColumn<QList<qint64>>("expected");
    const auto ok = ItemStatus::ok, nok = ItemStatus::nok, open = ItemStatus::open;
    const QList<ItemStatus> mixed{open, ok, nok, open, ok};
    QTest::newRow("all keeps every item in order") << mixed << ItemStatus::all << QList<qint64>{1, 2, 3, 4, 5};
    QTest::newRow("open") << mixed << open << QList<qint64>{1, 4};
    QTest::newRow("incidents") << mixed << nok << QList<qint64>{3};
    QTest::newRow("open when all are done") << QList<ItemStatus>{ok, nok, ok} << open << QList<qint64>{};
}

void TestItem::filteredItems()
{
    QFETCH(QList<ItemStatus>, statuses);
    QFETCH(ItemStatus, filter);
    QTEST(ids(makeList(statuses, filter).filteredItems()), "expected");
}

void TestItem::filteredItemsFollowTheItems()
{
    // A list starts empty, showing all.
    QCOMPARE(ItemList().filterData.status, ItemStatus::all);
    ItemList list = makeList({ItemStatus::open, ItemStatus::open}, ItemStatus::open);
    QCOMPARE(list.filteredItems().size(), 2);
    // Items are shared: a status changed through any holder shows at once.
    list.filteredItems().first()->status = ItemStatus::ok;
    QCOMPARE(ids(list.filteredItems()), (QList<qint64>{2}));
    list.filterData.status = ItemStatus::ok;
    QCOMPARE(ids(list.filteredItems()), (QList<qint64>{1}));
}

void TestItem::codesItemsAndFilter()
{
    const QJsonObject o = makeList({ItemStatus::nok}, ItemStatus::open).encode();
    QCOMPARE(o.keys(), (QStringList{"filterData", "items"}));
    QCOMPARE(o["filterData"].toObject(), (QJsonObject{{"status", "Open"}}));
    QCOMPARE(o["items"].toArray().size(), 1);
    QCOMPARE(o["items"].toArray().first().toObject()["status"].toString(), "Incidents");

    const QByteArray body = R"({"items":[{"id":5,"taskId":1,"name":"n","details":"d","isAudit":"0",
        "dateCreated":"2026-01-01T00:00:00.000Z","itemStatusId":2}],"filterData":{"status":"Completed"}})";
    const ItemList decoded = json::decode<ItemList>(body);
    QCOMPARE(ids(decoded.items), (QList<qint64>{5}));
    QCOMPARE(decoded.filterData.status, ItemStatus::ok);
    QVERIFY(decoded.filteredItems().isEmpty());
    // The filter is read by its exact text.
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)json::decode<ItemFilterData>(R"({"status":"open"})"));
}

void TestItem::answerTakenRowByRow_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<ItemStatus>("filterBefore");
    QTest::addColumn<ItemStatus>("filterAfter");
    QTest::addColumn<QStringList>("removed");
    QTest::addColumn<QStringList>("inserted");
    QTest::addColumn<QStringList>("changed");

    const auto row = [](const char *name, const char *before, const char *after, const QStringList &removed,
                        const QStringList &inserted, const QStringList &changed,
                        ItemStatus filterBefore = ItemStatus::all, ItemStatus filterAfter = ItemStatus::all) {
        QTest::newRow(name) << QString(before) << QString(after) << filterBefore << filterAfter << removed << inserted
                            << changed;
    };
    row("first answer", "", "1 2 3", {}, {"0-2"}, {});
    row("same answer", "1 2 3", "1 2 3", {}, {}, {});
    row("one new at the end", "1 2", "1 2 3", {}, {"2-2"}, {});
    row("one gone", "1 2 3", "1 3", {"1-1"}, {}, {});
    row("one completed", "1 2 3", "1 2* 3", {}, {}, {"1-1"});
    row("gone, new and changed", "1 2 3 4", "2* 4 5 6", {"2-2", "0-0"}, {"2-3"}, {"0-0"});
    // Choosing another status removes and inserts rows; a status change under
    // a filter takes out only the row that no longer passes.
    row("filtered to the open ones", "1 2 3* 4*", "1 2 3* 4*", {"2-3"}, {}, {}, ItemStatus::all, ItemStatus::open);
    row("back to all", "1 2 3* 4*", "1 2 3* 4*", {}, {"2-3"}, {}, ItemStatus::open, ItemStatus::all);
    row("completed under a filter", "1 2 3", "1 2* 3", {"1-1"}, {}, {}, ItemStatus::open, ItemStatus::open);
}

void TestItem::answerTakenRowByRow()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(ItemStatus, filterBefore);
    QFETCH(ItemStatus, filterAfter);

    const auto task = std::make_shared<Task>();
    task->itemList.items = items(before);
    task->itemList.filterData.status = filterBefore;
    ItemListModel model;
    model.setTask(task);
    QAbstractItemModelTester sourceTester(model.taskItems(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    QSignalSpy removes(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy inserts(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);

    task->itemList.items = items(after);
    task->itemList.filterData.status = filterAfter;
    model.reload();

    // A row number is a position in the task's filtered items.
    const QList<ItemPtr> filtered = task->itemList.filteredItems();
    QCOMPARE(model.rowCount(), filtered.size());
    for (int row = 0; row < model.rowCount(); ++row)
        QCOMPARE(model.item(row), filtered.at(row));
    QCOMPARE(resets.size(), 0);
    QTEST(rowRanges(removes), "removed");
    QTEST(rowRanges(inserts), "inserted");
    QStringList changedRows;
    for (const QList<QVariant> &signal : changes) {
        changedRows.append(
            QStringLiteral("%1-%2").arg(signal.at(0).toModelIndex().row()).arg(signal.at(1).toModelIndex().row()));
        // A status change names the roles it touches.
        QVERIFY(signal.at(2).value<QList<int>>().contains(TaskItemsModel::StatusRole));
    }
    QTEST(changedRows, "changed");
}

QTEST_GUILESS_MAIN(TestItem)
#include "tst_item.moc"
