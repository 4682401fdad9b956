#include "api/memoryofflinestore.h"
#include "api/outboxsender.h"
#include "comments/commentsvc.h"
#include "comments/commentthreadmodel.h"
#include "comments/custominputbar.h"
#include "host/navigationbar.h"
#include "host/outboxlistmodel.h"
#include "host/outboxvc.h"
#include "items/itemactionvc.h"
#include "items/taskitemsmodel.h"
#include "support/screentest.h"
#include "support/shots.h"

#include <QAbstractItemModelTester>
#include <QNetworkProxy>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTcpServer>
#include <QThread>

using namespace ravelin;
using namespace ravelin::test;

namespace {

const QString updatePath = QStringLiteral("/api/item/status");

} // namespace

// Work without a connection through the whole host: screens open from what the
// cache kept, results wait in the outbox with their marks and the bar's count,
// and reach the server once when the network is back.
class TestOfflineWork : public ScreenTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup()
    {
        closeHost();
        m_store.reset();
    }

    void openFromTheCacheAndSendOnceBackOnline();
    void refusedResultWaitsInTheNotSentList();
    void postedCommentShowsAtOnceAndUnmarksOnItsAnswer();

private:
    // A new host on the offline store.
    RavelinNavVC &host();
    // Every request of the harness's network fails as without a connection.
    void setOffline(bool offline);
    // Completes the open item on row 0 of the items screen.
    void completeFirstItem(ItemsVC &screen);

    std::unique_ptr<MemoryOfflineStore> m_store;
};

void TestOfflineWork::init()
{
    startHarness();
    m_store = std::make_unique<MemoryOfflineStore>();
    servePumpStation();
    m_api->server.on(
        "GET", itemsPath,
        CannedResponse{200, answer(QJsonArray{itemJson(1, taskId, "Gauge", 3), itemJson(2, taskId, "Seal", 3)})});
    m_api->server.on("PUT", updatePath, CannedResponse{200, R"({"success":true})"});
}

RavelinNavVC &TestOfflineWork::host()
{
    RavelinNavVC::Environment environment;
    environment.offlineStore = m_store.get();
    return openHost(std::move(environment));
}

void TestOfflineWork::setOffline(bool offline)
{
    if (!offline) {
        m_api->network.setProxy(QNetworkProxy::NoProxy);
        return;
    }
    // A proxy on a loopback port nobody listens on refuses every connection.
    QTcpServer closed;
    QVERIFY(closed.listen(QHostAddress::LocalHost));
    const quint16 port = closed.serverPort();
    closed.close();
    m_api->network.setProxy(QNetworkProxy(QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), port));
    m_api->network.clearConnectionCache();
}

void TestOfflineWork::completeFirstItem(ItemsVC &screen)
{
    screen.actOnRow(0);
    auto *sheet = qobject_cast<ItemActionVC *>(m_host->presentedScreen());
    QVERIFY(sheet);
    sheet->completeButton()->click();
}

void TestOfflineWork::openFromTheCacheAndSendOnceBackOnline()
{
    // Online once: the dashboard and the task's items are kept.
    QVERIFY(openOnlyTask(host(), 2, timeoutMs));
    QCOMPARE(m_host->navigationBar()->prompt(), QString());
    m_host.reset();

    // Restarted without a connection: both open from the cache, without an alert.
    setOffline(true);
    QVERIFY(waitForDashboard(host(), 1, timeoutMs));
    QVERIFY(topAlert(m_host->dashboard()).isEmpty());
    QCOMPARE(m_host->navigationBar()->prompt(), QStringLiteral("Offline · updated just now"));
    QCOMPARE(m_host->dashboard()->refreshControl()->refreshTitle(), m_host->navigationBar()->prompt());
    ItemsVC *screen = openOnlyTask(*m_host, 2, timeoutMs);
    QVERIFY(screen);
    QVERIFY(m_host->navigationBar()->prompt().startsWith(QStringLiteral("Offline")));

    // Completed offline: the item shows done, marked, and the bar counts it.
    TaskItemsModel *items = screen->itemModel()->taskItems();
    QAbstractItemModelTester tester(items, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy resets(items, &QAbstractItemModel::modelReset);
    completeFirstItem(*screen);
    QTRY_COMPARE_WITH_TIMEOUT(items->item(0)->status, ItemStatus::ok, timeoutMs);
    QTRY_COMPARE_WITH_TIMEOUT(items->index(0).data(TaskItemsModel::SyncMarkRole).value<SyncMark>(), SyncMark::waiting,
                              timeoutMs);
    QCOMPARE(items->index(1).data(TaskItemsModel::SyncMarkRole).value<SyncMark>(), SyncMark::none);
    QCOMPARE(m_host->navigationBar()->syncText(), QStringLiteral("1 waiting"));
    QCOMPARE(m_api->server.requestCount(updatePath), 0);
    grabShot(*m_host, QStringLiteral("offline-items-waiting"));

    // Back online: sent once, the mark goes row by row and the count with it.
    setOffline(false);
    m_host->outboxSender()->syncNow();
    QTRY_COMPARE_WITH_TIMEOUT(items->index(0).data(TaskItemsModel::SyncMarkRole).value<SyncMark>(), SyncMark::none,
                              timeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(m_host->outboxSender()->isIdle(), timeoutMs);
    QCOMPARE(m_api->server.requestCount(updatePath), 1);
    QCOMPARE(m_host->navigationBar()->syncText(), QString());
    QCOMPARE(resets.size(), 0);
    QTRY_COMPARE_WITH_TIMEOUT(m_host->navigationBar()->prompt(), QString(), timeoutMs);
}

void TestOfflineWork::refusedResultWaitsInTheNotSentList()
{
    m_api->server.on("PUT", updatePath, CannedResponse{409, R"({"message":"Task reassigned"})"});
    ItemsVC *screen = openOnlyTask(host(), 2, timeoutMs);
    QVERIFY(screen);
    completeFirstItem(*screen);
    QTRY_COMPARE_WITH_TIMEOUT(m_host->navigationBar()->syncText(), QStringLiteral("1 not sent"), timeoutMs);
    QTRY_COMPARE_WITH_TIMEOUT(
        screen->itemModel()->taskItems()->index(0).data(TaskItemsModel::SyncMarkRole).value<SyncMark>(),
        SyncMark::notSent, timeoutMs);

    // The count opens the list; the refused result can be discarded there.
    m_host->navigationBar()->syncButton()->click();
    auto *list = qobject_cast<OutboxVC *>(m_host->topScreen());
    QVERIFY(list);
    QAbstractItemModelTester tester(list->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(list->model()->rowCount(), 1);
    grabShot(*m_host, QStringLiteral("offline-not-sent"));
    const QString row = list->model()->index(0).data().toString();
    QVERIFY2(row.contains(QStringLiteral("Items completed: 1")) && row.contains(QStringLiteral("Task reassigned")),
             qPrintable(row));
    auto *discard = list->findChild<QPushButton *>(QStringLiteral("discardButton"));
    list->listView()->setCurrentIndex(list->model()->index(0));
    QVERIFY(discard->isEnabled());
    QSignalSpy removed(list->model(), &QAbstractItemModel::rowsRemoved);
    discard->click();
    QTRY_COMPARE_WITH_TIMEOUT(removed.size(), 1, timeoutMs);
    QCOMPARE(m_host->navigationBar()->syncText(), QString());
    QCOMPARE(m_api->server.requestCount(updatePath), 1);
}

void TestOfflineWork::postedCommentShowsAtOnceAndUnmarksOnItsAnswer()
{
    // Once a comment is posted, the thread's answer is slow: the row must not wait for it.
    std::atomic<bool> posted = false;
    m_api->server.on("GET", commentsPath, [&posted](const RecordedRequest &) {
        if (posted)
            QThread::msleep(1500);
        return CannedResponse{200, answer(QJsonArray{commentJson("Seal replaced", "2026-11-01T09:00:00.000Z")})};
    });
    m_api->server.on("POST", QStringLiteral("/api/comment"), [&posted](const RecordedRequest &) {
        posted = true;
        return CannedResponse{200, R"({"success":true})"};
    });
    QVERIFY(openScreen(host(), QStringLiteral("comments"), ScreenRoute{1, 0, 2, 2}, timeoutMs));
    auto *screen = qobject_cast<CommentsVC *>(m_host->topScreen());
    CommentThreadModel *thread = screen->threadModel();
    QAbstractItemModelTester tester(thread, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const int fetches = m_api->server.requestCount(commentsPath);
    const auto lastMark = [thread] {
        return thread->index(thread->lastCommentRow()).data(CommentThreadModel::SyncMarkRole).value<SyncMark>();
    };

    setOffline(true);
    screen->inputBar()->inputTextView()->setPlainText(QStringLiteral("Gauge checked"));
    screen->inputBar()->sendButton()->click();
    QTRY_COMPARE_WITH_TIMEOUT(lastMark(), SyncMark::waiting, timeoutMs);
    QCOMPARE(thread->index(thread->lastCommentRow()).data(Qt::AccessibleTextRole).toString(),
             QStringLiteral("Gauge checked"));
    QCOMPARE(m_api->server.requestCount(commentsPath), fetches);

    setOffline(false);
    m_host->outboxSender()->syncNow();
    QTRY_COMPARE_WITH_TIMEOUT(lastMark(), SyncMark::none, timeoutMs);
    QVERIFY(screen->isFetching()); // the thread's slow answer is still to come
    QCOMPARE(thread->index(thread->lastCommentRow()).data(Qt::AccessibleTextRole).toString(),
             QStringLiteral("Gauge checked"));
    QTRY_VERIFY_WITH_TIMEOUT(!screen->isFetching(), timeoutMs);
}

QTEST_MAIN(TestOfflineWork)
#include "tst_offlinework.moc"
