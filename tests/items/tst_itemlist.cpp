#include "api/json.h"
#include "items/itemlist.h"

#include <QJsonArray>
#include <QTest>

using namespace ravelin;

namespace {

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
    QList<qint64> out;
    for (const ItemPtr &i : items)
        out.append(i->id);
    return out;
}

} // namespace

class TestItemList : public QObject
{
    Q_OBJECT

private slots:
    void filteredItems_data();
    void filteredItems();
    void filteredItemsFollowTheItems();
    void codesItemsAndFilter();
};

void TestItemList::filteredItems_data()
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

void TestItemList::filteredItems()
{
    QFETCH(QList<ItemStatus>, statuses);
    QFETCH(ItemStatus, filter);
    QTEST(ids(makeList(statuses, filter).filteredItems()), "expected");
}

void TestItemList::filteredItemsFollowTheItems()
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

void TestItemList::codesItemsAndFilter()
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

QTEST_GUILESS_MAIN(TestItemList)
#include "tst_itemlist.moc"
