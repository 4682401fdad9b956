#include "items/itemactionvm.h"
#include "support/apiharness.h"
#include "support/fixtures.h"
#include "support/logcapture.h"

#include <QTest>

using namespace ravelin;
using namespace ravelin::test;

namespace {

constexpr int timeoutMs = 10000;

ItemPtr makeItem(qint64 id, std::optional<QString> qr = std::nullopt)
{
    auto item = std::make_shared<Item>();
    item->id = id;
    item->name = QStringLiteral("Item %1").arg(id);
    item->qrCode = std::move(qr);
    return item;
}

QJsonObject entry(qint64 id, int status, const QJsonValue &text, const QJsonValue &media)
{
    return QJsonObject{{"id", id}, {"item_status_id", status}, {"text", text}, {"media_path", media}};
}

} // namespace

class TestItemActionVM : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void qrIndicator_data();
    void qrIndicator();
    void updateBody_data();
    void updateBody();
    void failedUpdateReportsFalse();
    void completesWhenTheManagerIsGone_data();
    void completesWhenTheManagerIsGone();

private:
    std::unique_ptr<ApiHarness> m_api;
    TaskPtr m_task;
    UsersData m_users;
};

void TestItemActionVM::init()
{
    m_api = std::make_unique<ApiHarness>();
    m_task = std::make_shared<Task>();
    m_task->id = 5;
    m_users.currentUser.id = 7;
    m_api->server.on("PUT", "/api/item/status", CannedResponse{200, R"({"success":true,"data":{"task_id":5}})"});
}

void TestItemActionVM::cleanup()
{
    m_api.reset();
}

void TestItemActionVM::qrIndicator_data()
{
    QTest::addColumn<QList<ItemPtr>>("items");
    QTest::addColumn<bool>("shown");
    QTest::newRow("no items") << QList<ItemPtr>{} << false;
    QTest::newRow("one item with a code") << QList<ItemPtr>{makeItem(1, QStringLiteral("CP-1"))} << true;
    QTest::newRow("one item without a code") << QList<ItemPtr>{makeItem(1)} << false;
    QTest::newRow("two items, one with a code")
        << QList<ItemPtr>{makeItem(1, QStringLiteral("CP-1")), makeItem(2)} << false;
}

void TestItemActionVM::qrIndicator()
{
    QFETCH(QList<ItemPtr>, items);
    QFETCH(bool, shown);
    QCOMPARE(ItemActionVM(items, m_task, &m_api->manager, QString(), m_users).showsQRIndicator(), shown);
}

void TestItemActionVM::updateBody_data()
{
    QTest::addColumn<QList<qint64>>("ids");
    QTest::addColumn<ItemStatus>("status");
    QTest::addColumn<QString>("note");
    QTest::addColumn<bool>("withPicture");
    // The wire form of notes and of several items: tst_itemsupdatepayload.
    QTest::newRow("complete one, no note, no picture") << QList<qint64>{11} << ItemStatus::ok << "" << false;
    QTest::newRow("report two with note and picture") << QList<qint64>{12, 11} << ItemStatus::nok << "Leak" << true;
}

void TestItemActionVM::updateBody()
{
    QFETCH(QList<qint64>, ids);
    QFETCH(ItemStatus, status);
    QFETCH(QString, note);
    QFETCH(bool, withPicture);

    QList<ItemPtr> items;
    for (qint64 id : ids)
        items.append(makeItem(id));
    ItemActionVM vm(items, m_task, &m_api->manager, QStringLiteral("Add a note"), m_users);
    std::optional<QImage> picture;
    if (withPicture) {
        picture = QImage(4, 4, QImage::Format_RGB32);
        picture->fill(Qt::green);
    }
    std::optional<bool> ok;
    vm.update(status, note, picture, [&](bool success) { ok = success; });
    QTRY_VERIFY_WITH_TIMEOUT(ok.has_value(), timeoutMs);
    QVERIFY(*ok);
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

void TestItemActionVM::failedUpdateReportsFalse()
{
    m_api->server.on("PUT", "/api/item/status", CannedResponse{500, {}});
    ItemActionVM vm({makeItem(1)}, m_task, &m_api->manager, QString(), m_users);
    LogCapture log;
    std::optional<bool> ok;
    vm.update(ItemStatus::nok, QStringLiteral("x"), std::nullopt, [&](bool success) { ok = success; });
    QTRY_VERIFY_WITH_TIMEOUT(ok.has_value(), timeoutMs);
    QVERIFY(!*ok);
    QCOMPARE(log.linesStartingWith(QStringLiteral("We got a failure trying to get the tasks. The error we got was: "))
                 .size(),
             1);
}

void TestItemActionVM::completesWhenTheManagerIsGone_data()
{
    QTest::addColumn<bool>("goneBeforeUpdate");
    QTest::addColumn<bool>("withPicture");
    QTest::newRow("gone before the update") << true << false;
    QTest::newRow("gone while the request runs") << false << false;
    QTest::newRow("gone while the host stores the picture") << false << true;
}

void TestItemActionVM::completesWhenTheManagerIsGone()
{
    QFETCH(bool, goneBeforeUpdate);
    QFETCH(bool, withPicture);
    auto manager = std::make_unique<NetworkManager>(&m_api->network, &m_api->store, fixedClock(m_api->now));
    manager->setDelegate(&m_api->host);
    ItemActionVM vm({makeItem(1)}, m_task, manager.get(), QString(), m_users);
    LogCapture log;
    std::optional<QImage> picture;
    if (withPicture)
        picture = QImage(2, 2, QImage::Format_RGB32);

    QList<bool> results;
    if (goneBeforeUpdate)
        manager.reset();
    vm.update(ItemStatus::ok, std::nullopt, picture, [&](bool success) { results.append(success); });
    manager.reset();
    QTRY_VERIFY_WITH_TIMEOUT(!results.isEmpty(), timeoutMs);
    ApiQueue::shared().waitForDone();
    QCoreApplication::processEvents();
    QCOMPARE(results, QList<bool>{false});
    QCOMPARE(log.linesStartingWith(QStringLiteral("We got a failure trying to get the tasks. The error we got was: "))
                 .size(),
             1);
}

QTEST_GUILESS_MAIN(TestItemActionVM)
#include "tst_itemactionvm.moc"
