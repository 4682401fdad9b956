#include "items/blocktaskvm.h"
#include "items/itemactionvm.h"
#include "items/itemsvm.h"
#include "support/apiharness.h"
#include "support/fixtures.h"
#include "support/logcapture.h"
#include "support/testpicker.h"

#include <QTest>

using namespace ravelin;
using namespace ravelin::test;

namespace {

QJsonObject entry(qint64 id, int status, const QJsonValue &text, const QJsonValue &media)
{
    return QJsonObject{{"id", id}, {"item_status_id", status}, {"text", text}, {"media_path", media}};
}

// An item named "Item <id>" unless named, with "<name> details" as its details.
ItemPtr itemOf(qint64 id, QString name = {}, ItemStatus status = ItemStatus::open,
               std::optional<QString> qr = std::nullopt)
{
    auto item = std::make_shared<Item>();
    item->id = id;
    item->name = name.isEmpty() ? QStringLiteral("Item %1").arg(id) : std::move(name);
    item->details = item->name + QStringLiteral(" details");
    item->status = status;
    item->qrCode = std::move(qr);
    return item;
}

} // namespace

class TestItemViewModels : public ViewModelTest<ItemsVM>
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { closeViewModel(); }
    void completeRules_data();
    void completeRules();
    void reportNeedsANote();
    void updateBody_data();
    void updateBody();
    void completesWhenTheManagerIsGone_data();
    void completesWhenTheManagerIsGone();

    void itemAndDetailsLines_data();
    void itemAndDetailsLines();
    void block_data();
    void block();

    void fetchReplacesItemsUnlessItFails();
    void selectionIsByIdWithoutDuplicates();
    void qrMatch_data();
    void qrMatch();

private:
    // Fetches the task's items through the items view model.
    bool fetch()
    {
        return reported([this](auto done) { m_vm->fetchItems(done); }) == true;
    }
};

void TestItemViewModels::init()
{
    startHarness();
    m_api->server.on("PUT", "/api/item/status", CannedResponse{200, R"({"success":true,"data":{"task_id":5}})"});
    m_api->server.on("POST", "/api/comment", CannedResponse{200, R"({"success":true})"});
    m_vm = std::make_unique<ItemsVM>(m_task, &m_api->manager, UsersData{});
}

void TestItemViewModels::completeRules_data()
{
    QTest::addColumn<QList<ItemPtr>>("items");
    QTest::addColumn<bool>("qrIndicator");
    QTest::addColumn<QString>("blocker"); // empty: the items can be completed
    const QString scan = QStringLiteral("Scan QR code to complete this item");
    ItemPtr scanned = itemOf(1, {}, ItemStatus::open, QStringLiteral("CP-1"));
    scanned->isQRMapped = true;
    QTest::newRow("no items") << QList<ItemPtr>{} << false << "";
    QTest::newRow("one item with a code, not scanned")
        << QList<ItemPtr>{itemOf(1, {}, ItemStatus::open, QStringLiteral("CP-1"))} << true << scan;
    QTest::newRow("one item with a code, scanned") << QList<ItemPtr>{scanned} << true << "";
    QTest::newRow("one item without a code") << QList<ItemPtr>{itemOf(1)} << false << "";
    QTest::newRow("one item already completed") << QList<ItemPtr>{itemOf(1, QStringLiteral("Valve"), ItemStatus::ok)}
                                                << false << "Already Marked as `Completed`";
    QTest::newRow("reported item with a code, not scanned")
        << QList<ItemPtr>{itemOf(1, QStringLiteral("Valve"), ItemStatus::nok, QStringLiteral("CP-1"))} << true << scan;
    QTest::newRow("two items, one with a code, one completed")
        << QList<ItemPtr>{itemOf(1, {}, ItemStatus::open, QStringLiteral("CP-1")),
                          itemOf(2, QStringLiteral("Valve"), ItemStatus::ok)}
        << false << "";
}

void TestItemViewModels::completeRules()
{
    QFETCH(QList<ItemPtr>, items);
    const ItemActionVM vm(items, m_task, &m_api->manager, QString(), m_api->users);
    QTEST(vm.showsQRIndicator(), "qrIndicator");
    QTEST(vm.completeBlocker().value_or(QString()), "blocker");
}

void TestItemViewModels::reportNeedsANote()
{
    for (const QString &note : {QString(), QStringLiteral("  "), QStringLiteral("\n\t")})
        QVERIFY2(!ItemActionVM::canReport(note), qPrintable(note));
    QVERIFY(ItemActionVM::canReport(QStringLiteral("  Cracked")));
}

void TestItemViewModels::updateBody_data()
{
    QTest::addColumn<QList<qint64>>("ids");
    QTest::addColumn<ItemStatus>("status");
    QTest::addColumn<QString>("note");
    QTest::addColumn<bool>("withPicture");
    // The wire form of notes and of several items: tst_item wireForm.
    QTest::newRow("complete one, no note, no picture") << QList<qint64>{11} << ItemStatus::ok << "" << false;
    QTest::newRow("report two with note and picture") << QList<qint64>{12, 11} << ItemStatus::nok << "Leak" << true;
}

void TestItemViewModels::updateBody()
{
    QFETCH(QList<qint64>, ids);
    QFETCH(ItemStatus, status);
    QFETCH(QString, note);
    QFETCH(bool, withPicture);

    QList<ItemPtr> items;
    for (qint64 id : ids)
        items.append(itemOf(id));
    ItemActionVM vm(items, m_task, &m_api->manager, QStringLiteral("Add a note"), m_api->users);
    const std::optional<QImage> picture = withPicture ? std::optional(solidPicture()) : std::nullopt;
    QCOMPARE(reported([&](auto done) { vm.update(status, note, picture, done); }), true);
    QCOMPARE(vm.newStatus(), status);

    QCOMPARE(m_api->host.uploads.size(), withPicture ? 1 : 0);
    const QJsonValue media = withPicture ? QJsonValue(QStringLiteral("uploads/") + m_api->host.uploads.first().second)
                                         : QJsonValue(QJsonValue::Null);
    QJsonArray expectedItems;
    for (qint64 id : ids)
        expectedItems.append(entry(id, status == ItemStatus::ok ? 1 : 2,
                                   note.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(note), media));
    const auto sent = m_api->server.requests(QStringLiteral("/api/item/status"));
    QCOMPARE(sent.size(), 1);
    QCOMPARE(sent.first().method, QByteArray("PUT"));
    QCOMPARE(QJsonDocument::fromJson(sent.first().body).object(),
             (QJsonObject{{"task_id", 5}, {"updater_user_id", 7}, {"items", expectedItems}}));
}

void TestItemViewModels::completesWhenTheManagerIsGone_data()
{
    QTest::addColumn<bool>("goneBeforeUpdate");
    QTest::addColumn<bool>("withPicture");
    QTest::newRow("gone before the update") << true << false;
    QTest::newRow("gone while the request runs") << false << false;
    QTest::newRow("gone while the host stores the picture") << false << true;
}

void TestItemViewModels::completesWhenTheManagerIsGone()
{
    QFETCH(bool, goneBeforeUpdate);
    QFETCH(bool, withPicture);
    auto manager = std::make_unique<NetworkManager>(&m_api->network, &m_api->store, fixedClock(m_api->now));
    manager->setDelegate(&m_api->host);
    ItemActionVM vm({itemOf(1)}, m_task, manager.get(), QString(), m_api->users);
    LogCapture log;
    const std::optional<QImage> picture = withPicture ? std::optional(solidPicture()) : std::nullopt;

    QList<bool> results;
    if (goneBeforeUpdate)
        manager.reset();
    vm.update(ItemStatus::ok, std::nullopt, picture, [&](bool success) { results.append(success); });
    manager.reset();
    QTRY_VERIFY_WITH_TIMEOUT(!results.isEmpty(), timeoutMs);
    ApiQueue::shared().waitForDone();
    QCoreApplication::processEvents();
    QCOMPARE(results, QList<bool>{false});
    QCOMPARE(log.count(LogCapture::failedFetch(QStringLiteral("tasks"))), 1);
}

void TestItemViewModels::itemAndDetailsLines_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("itemLine");
    QTest::addColumn<QString>("detailsLine");
    QTest::newRow("no items") << QStringList{} << QStringLiteral("") << "";
    QTest::newRow("one item") << QStringList{"Seal"} << QStringLiteral("Seal") << "Seal details";
    QTest::newRow("three items") << QStringList{"Seal", "Gauge", "Valve"} << QStringLiteral("") << "Seal\nGauge\nValve";
}

void TestItemViewModels::itemAndDetailsLines()
{
    QFETCH(QStringList, names);
    QFETCH(QString, itemLine);
    QFETCH(QString, detailsLine);
    for (int i = 0; i < names.size(); ++i)
        m_task->itemList.items.append(itemOf(i + 1, names.at(i)));
    const BlockTaskVM vm(m_task, &m_api->manager, QStringLiteral("Provide a reason for blocking the task"),
                         m_api->users);
    QCOMPARE(vm.itemLine(), itemLine);
    QCOMPARE(vm.detailsLine(), detailsLine);
}

void TestItemViewModels::block_data()
{
    QTest::addColumn<QString>("reason"); // "<none>" for absent
    QTest::addColumn<bool>("withPicture");
    QTest::addColumn<BlockTaskVM::Outcome>("outcome");
    QTest::addColumn<QString>("sentText"); // text of the posted comment
    using O = BlockTaskVM::Outcome;
    QTest::newRow("nothing at all") << "<none>" << false << O::blockedWithoutComment << "";
    QTest::newRow("empty reason") << "" << false << O::blockedWithoutComment << "";
    QTest::newRow("one blank") << " " << false << O::blockedWithoutComment << "";
    QTest::newRow("two blanks are a reason") << "  " << false << O::blocked << "  ";
    QTest::newRow("a reason") << "Gate locked" << false << O::blocked << "Gate locked";
    QTest::newRow("picture without reason") << "<none>" << true << O::blocked << " ";
    QTest::newRow("picture and reason") << "Flooded" << true << O::blocked << "Flooded";
    // The comment is posted but refused: not a block.
    QTest::newRow("comment refused") << "Gate locked" << false << O::failed << "Gate locked";
}

void TestItemViewModels::block()
{
    QFETCH(QString, reason);
    QFETCH(bool, withPicture);
    QFETCH(BlockTaskVM::Outcome, outcome);
    if (outcome == BlockTaskVM::Outcome::failed)
        m_api->server.on("POST", "/api/comment", CannedResponse{500, {}});
    BlockTaskVM vm(m_task, &m_api->manager, QString(), m_api->users);
    const std::optional<QImage> picture = withPicture ? std::optional(solidPicture()) : std::nullopt;
    std::optional<BlockTaskVM::Outcome> result;
    vm.block(reason == QLatin1String("<none>") ? std::nullopt : std::optional(reason), picture,
             [&](BlockTaskVM::Outcome o) { result = o; });
    QTRY_VERIFY_WITH_TIMEOUT(result.has_value(), timeoutMs);
    QCOMPARE(*result, outcome);

    const auto posted = m_api->server.requests(QStringLiteral("/api/comment"));
    if (outcome == BlockTaskVM::Outcome::blockedWithoutComment) {
        QCOMPARE(posted.size(), 0);
        return;
    }
    QCOMPARE(posted.size(), 1);
    const QJsonObject body = QJsonDocument::fromJson(posted.first().body).object();
    QTEST(body.value("text").toString(), "sentText");
    QCOMPARE(body.value("is_incident").toBool(), true);
    QCOMPARE(body.value("task_id").toInteger(), 5);
    QCOMPARE(body.value("user_id").toInteger(), 7);
    QCOMPARE(body.value("media_path").isNull(), !withPicture);
}

void TestItemViewModels::fetchReplacesItemsUnlessItFails()
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

    // A failed fetch keeps the earlier items.
    const QList<ItemPtr> before = m_task->itemList.items;
    m_api->server.on("GET", "/api/items/taskId/5", CannedResponse{404, {}});
    LogCapture log;
    QVERIFY(!fetch());
    QCOMPARE(m_task->itemList.items, before);
    QCOMPARE(log.count(LogCapture::failedFetch(QStringLiteral("items"))), 1);
}

void TestItemViewModels::selectionIsByIdWithoutDuplicates()
{
    const ItemPtr a = itemOf(1, "A", ItemStatus::open);
    const ItemPtr b = itemOf(2, "B", ItemStatus::open);
    const ItemPtr aCopy = itemOf(1, "A again", ItemStatus::open);
    m_vm->select(a, true);
    m_vm->select(b, true);
    m_vm->select(aCopy, true); // same id: ignored
    QCOMPARE(m_vm->selectedItems(), (QList<ItemPtr>{a, b}));
    m_vm->select(itemOf(3, "C", ItemStatus::open), false); // not selected: no change
    QCOMPARE(m_vm->selectedItems().size(), 2);
    m_vm->select(aCopy, false); // removal by id
    QCOMPARE(m_vm->selectedItems(), QList<ItemPtr>{b});
}

void TestItemViewModels::qrMatch_data()
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
    QTest::newRow("first of duplicates is completed")
        << "CP-1" << ItemStatus::all << -1 << QStringLiteral("Item Detected")
        << "Item `Gauge` already marked as `Completed`." << qint64(0);
    QTest::newRow("open item: its row") << "CP-2" << ItemStatus::all << 2 << QStringLiteral("") << "" << qint64(3);
    QTest::newRow("row within the filtered list")
        << "CP-3" << ItemStatus::nok << 0 << QStringLiteral("") << "" << qint64(4);
    QTest::newRow("hidden by the filter: mapped, nothing shown")
        << "CP-2" << ItemStatus::ok << -1 << QStringLiteral("") << "" << qint64(3);
}

void TestItemViewModels::qrMatch()
{
    QFETCH(QString, scanned);
    QFETCH(ItemStatus, filter);
    QFETCH(int, row);
    QFETCH(QString, title);
    QFETCH(QString, message);
    QFETCH(qint64, mappedId);

    m_task->itemList.items
        = {itemOf(1, "Gauge", ItemStatus::ok, QStringLiteral("CP-1")),
           itemOf(2, "Seal", ItemStatus::open, QStringLiteral("CP-1")),
           itemOf(3, "Valve", ItemStatus::open, QStringLiteral("CP-2")),
           itemOf(4, "Hatch", ItemStatus::nok, QStringLiteral("CP-3")), itemOf(5, "Fence", ItemStatus::open)};
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

QTEST_GUILESS_MAIN(TestItemViewModels)
#include "tst_itemsvm.moc"
