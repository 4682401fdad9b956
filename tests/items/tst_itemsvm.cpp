#include "items/itemsvm.h"
#include "support/apiharness.h"
#include "support/fixtures.h"
#include "support/logcapture.h"

#include <QTest>

using namespace ravelin;
using namespace ravelin::test;

namespace {

constexpr int timeoutMs = 10000;

ItemPtr makeItem(qint64 id, const QString &name, ItemStatus status, std::optional<QString> qr = std::nullopt)
{
    auto item = std::make_shared<Item>();
    item->id = id;
    item->name = name;
    item->status = status;
    item->qrCode = std::move(qr);
    return item;
}

} // namespace

class TestItemsVM : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void fetchReplacesItemsAndKeepsFilter();
    void failedFetchKeepsEarlierItems();
    void selectionIsByIdWithoutDuplicates();
    void qrMatch_data();
    void qrMatch();

private:
    bool fetch();
    std::unique_ptr<ApiHarness> m_api;
    TaskPtr m_task;
    std::unique_ptr<ItemsVM> m_vm;
};

void TestItemsVM::init()
{
    m_api = std::make_unique<ApiHarness>();
    m_task = std::make_shared<Task>();
    m_task->id = 5;
    m_vm = std::make_unique<ItemsVM>(m_task, &m_api->manager, UsersData{});
}

void TestItemsVM::cleanup()
{
    m_vm.reset();
    m_api.reset();
}

bool TestItemsVM::fetch()
{
    std::optional<bool> ok;
    m_vm->fetchItems([&](bool success) { ok = success; });
    return QTest::qWaitFor([&] { return ok.has_value(); }, timeoutMs) && *ok;
}

void TestItemsVM::fetchReplacesItemsAndKeepsFilter()
{
    m_task->itemList.filterData.status = ItemStatus::open;
    m_api->server.on(
        "GET", "/api/items/taskId/5",
        CannedResponse{
            200, answer(QJsonArray{itemJson(1, 5, "Seal", 3, QStringLiteral("CP-1")), itemJson(2, 5, "Gauge", 1)})});
    QVERIFY(fetch());
    QCOMPARE(m_task->itemList.items.size(), 2);
    QCOMPARE(m_task->itemList.filterData.status, ItemStatus::open);
    QCOMPARE(m_task->itemList.filteredItems().size(), 1);
}

void TestItemsVM::failedFetchKeepsEarlierItems()
{
    m_api->server.on("GET", "/api/items/taskId/5", CannedResponse{200, answer(QJsonArray{itemJson(1, 5, "Seal", 3)})});
    QVERIFY(fetch());
    const ItemPtr before = m_task->itemList.items.first();
    m_api->server.on("GET", "/api/items/taskId/5", CannedResponse{404, {}});
    LogCapture log;
    QVERIFY(!fetch());
    QCOMPARE(m_task->itemList.items, QList<ItemPtr>{before});
    QCOMPARE(log.linesStartingWith(QStringLiteral("We got a failure trying to get the items. The error we got was: "))
                 .size(),
             1);
}

void TestItemsVM::selectionIsByIdWithoutDuplicates()
{
    const ItemPtr a = makeItem(1, "A", ItemStatus::open);
    const ItemPtr b = makeItem(2, "B", ItemStatus::open);
    const ItemPtr aCopy = makeItem(1, "A again", ItemStatus::open);
    m_vm->select(a, true);
    m_vm->select(b, true);
    m_vm->select(aCopy, true); // same id: ignored
    QCOMPARE(m_vm->selectedItems(), (QList<ItemPtr>{a, b}));
    m_vm->select(makeItem(3, "C", ItemStatus::open), false); // not selected: no change
    QCOMPARE(m_vm->selectedItems().size(), 2);
    m_vm->select(aCopy, false); // removal by id
    QCOMPARE(m_vm->selectedItems(), QList<ItemPtr>{b});
}

void TestItemsVM::qrMatch_data()
{
    QTest::addColumn<QString>("scanned"); // "<none>" for an absent scan
    QTest::addColumn<ItemStatus>("filter");
    QTest::addColumn<int>("row"); // -1: none
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("message");
    QTest::addColumn<qint64>("mappedId"); // 0: nothing mapped

    const QString notFound = QStringLiteral("Cannot find item matching the scanned QR");
    QTest::newRow("absent scan") << "<none>" << ItemStatus::all << -1 << "Invalid Code" << notFound << qint64(0);
    QTest::newRow("no item has it") << "CP-404" << ItemStatus::all << -1 << "No Item Detected" << notFound << qint64(0);
    QTest::newRow("leading blank does not match")
        << " CP-2" << ItemStatus::all << -1 << "No Item Detected" << notFound << qint64(0);
    QTest::newRow("first of duplicates is completed") << "CP-1" << ItemStatus::all << -1 << "Item Detected"
                                                      << "Item `Gauge` already marked as `Completed`." << qint64(0);
    QTest::newRow("open item: its row") << "CP-2" << ItemStatus::all << 2 << ""
                                        << "" << qint64(3);
    QTest::newRow("row within the filtered list") << "CP-3" << ItemStatus::nok << 0 << ""
                                                  << "" << qint64(4);
    QTest::newRow("hidden by the filter: mapped, nothing shown") << "CP-2" << ItemStatus::ok << -1 << ""
                                                                 << "" << qint64(3);
}

void TestItemsVM::qrMatch()
{
    QFETCH(QString, scanned);
    QFETCH(ItemStatus, filter);
    QFETCH(int, row);
    QFETCH(QString, title);
    QFETCH(QString, message);
    QFETCH(qint64, mappedId);

    m_task->itemList.items
        = {makeItem(1, "Gauge", ItemStatus::ok, QStringLiteral("CP-1")),
           makeItem(2, "Seal", ItemStatus::open, QStringLiteral("CP-1")),
           makeItem(3, "Valve", ItemStatus::open, QStringLiteral("CP-2")),
           makeItem(4, "Hatch", ItemStatus::nok, QStringLiteral("CP-3")), makeItem(5, "Fence", ItemStatus::open)};
    m_task->itemList.filterData.status = filter;

    std::optional<QrMatch> match;
    m_vm->findItem(scanned == QLatin1String("<none>") ? std::nullopt : std::optional(scanned),
                   [&](const QrMatch &m) { match = m; });
    QVERIFY(match);
    QCOMPARE(match->row.value_or(-1), row);
    QCOMPARE(match->title.value_or(QString()), title);
    QCOMPARE(match->message.value_or(QString()), message);
    for (const ItemPtr &item : m_task->itemList.items)
        QCOMPARE(item->isQRMapped, item->id == mappedId);
}

QTEST_GUILESS_MAIN(TestItemsVM)
#include "tst_itemsvm.moc"
