#include "api/outboxsender.h"
#include "api/sqliteofflinestore.h"
#include "outboxserver.h"
#include "support/apiharness.h"
#include "support/outboxresults.h"
#include "support/testpicker.h"

#include <QDirIterator>
#include <QSignalSpy>
#include <QTest>

using namespace ravelin;
using namespace std::chrono;
using test::OutboxServer;

namespace {
constexpr int waitMs = 10000;
constexpr qint64 user = 7;
} // namespace

class TestOutboxSender : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup()
    {
        m_sender.reset();
        m_store.reset();
        m_api.reset();
    }
    void sendsEveryKind_data();
    void sendsEveryKind();
    void resultsOfATaskGoInOrder();
    void failuresRetryWithBackoff();
    void expiredSessionKeepsTheOutbox();
    void refusalStopsTheResult_data();
    void refusalStopsTheResult();
    void refusedResultSentAgainOrDiscarded();
    void commentIsNeverPostedTwice_data();
    void commentIsNeverPostedTwice();
    void usersAreKeptApart();
    void noTokenIsWritten();
    void answersAreKeptForOfflineOpening();

private:
    OutboxEntry comment(qint64 taskId, const QString &text, OutboxEntry::Kind kind = OutboxEntry::Kind::comment) const;
    void drain();

    std::unique_ptr<test::ApiHarness> m_api;
    std::unique_ptr<OutboxServer> m_results;
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<SqliteOfflineStore> m_store;
    std::unique_ptr<OutboxSender> m_sender;
};

void TestOutboxSender::init()
{
    m_api = std::make_unique<test::ApiHarness>();
    m_api->manager.setTransferTimeout(milliseconds(300));
    m_results = std::make_unique<OutboxServer>(m_api->server);
    m_dir = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<SqliteOfflineStore>(m_dir->path());
    m_sender = std::make_unique<OutboxSender>(m_store.get(), &m_api->manager);
    m_sender->setBackoff({milliseconds(20), milliseconds(100)});
    m_sender->setUserId(user);
}

OutboxEntry TestOutboxSender::comment(qint64 taskId, const QString &text, OutboxEntry::Kind kind) const
{
    return test::sampleResult(kind, user, taskId, text, 5, m_api->now); // a block sets status 5
}

void TestOutboxSender::drain()
{
    QTRY_VERIFY_WITH_TIMEOUT(m_sender->counts().waiting == 0 && m_sender->isIdle(), waitMs);
}

void TestOutboxSender::sendsEveryKind_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("withPicture");
    QTest::addColumn<QStringList>("requests");
    QTest::addColumn<QList<int>>("states"); // every state the row went through
    using State = OutboxEntry::State;
    QTest::newRow("status") << int(OutboxEntry::Kind::taskStatus) << false << QStringList{"status"}
                            << QList<int>{int(State::waiting), int(State::sent)};
    QTest::newRow("items with a picture") << int(OutboxEntry::Kind::itemsUpdate) << true << QStringList{"items"}
                                          << QList<int>{int(State::waiting), int(State::sent)};
    QTest::newRow("comment with a picture") << int(OutboxEntry::Kind::comment) << true << QStringList{"comment"}
                                            << QList<int>{int(State::waiting), int(State::attempted), int(State::sent)};
    QTest::newRow("block") << int(OutboxEntry::Kind::block) << false << QStringList{"comment", "status"}
                           << QList<int>{int(State::waiting), int(State::attempted), int(State::waiting),
                                         int(State::sent)};
}

void TestOutboxSender::sendsEveryKind()
{
    QFETCH(int, kind);
    QSignalSpy changes(m_sender.get(), &OutboxSender::entryChanged);
    QSignalSpy counts(m_sender.get(), &OutboxSender::countsChanged);

    const OutboxEntry entry
        = test::sampleResult(OutboxEntry::Kind(kind), user, 12, QStringLiteral("Replaced"), 5, m_api->now);
    QFETCH(bool, withPicture);
    const QImage picture = withPicture ? test::solidPicture() : QImage();
    const auto saved = m_sender->add(entry, picture);
    QVERIFY(saved);
    QCOMPARE(m_sender->counts(), (OfflineStore::Counts{1, 0}));
    drain();

    QStringList kinds;
    for (const OutboxServer::Received &r : m_results->received())
        kinds << r.kind;
    QTEST(kinds, "requests");
    QList<int> seen;
    for (const QList<QVariant> &change : changes) {
        QCOMPARE(change.at(0).toLongLong(), saved->id);
        seen << int(change.at(1).value<OutboxEntry::State>());
    }
    QTEST(seen, "states");
    QCOMPARE(counts.last(), (QList<QVariant>{0, 0}));
    QVERIFY(m_store->entries(user).isEmpty());

    const QJsonObject first = m_results->received().first().body;
    if (!picture.isNull()) {
        QCOMPARE(m_api->host.uploads.size(), 1);
        QCOMPARE(m_api->host.uploads.first().second, saved->uploadName);
        const QString path = QStringLiteral("uploads/") + saved->uploadName;
        const QJsonObject named = kind == int(OutboxEntry::Kind::itemsUpdate) ? first["items"][0].toObject() : first;
        QCOMPARE(named["media_path"].toString(), path);
    }
    if (entry.commentPayload)
        QCOMPARE(first["date_created"].toInteger(), entry.commentPayload->dateCreated);
    if (kind == int(OutboxEntry::Kind::block))
        QCOMPARE(m_results->received().last().body["task_status_id"].toInt(), 5);
}

void TestOutboxSender::resultsOfATaskGoInOrder()
{
    // Two tasks, interleaved; each task's results reach the server in the order made.
    QList<qint64> made;
    for (int i = 0; i < 6; ++i) {
        const qint64 task = 1 + i % 2;
        QVERIFY(m_sender->add(i % 3 == 0 ? OutboxEntry::taskStatus(user, task, 2 + i, m_api->now)
                                         : comment(task, QStringLiteral("note %1").arg(i))));
    }
    drain();
    QStringList order1, order2;
    for (const OutboxServer::Received &r : m_results->received()) {
        const QString what = r.kind == QLatin1String("status") ? QString::number(r.body["task_status_id"].toInt())
                                                               : r.body["text"].toString();
        (r.taskId == 1 ? order1 : order2) << what;
    }
    QCOMPARE(order1, (QStringList{"2", "note 2", "note 4"}));
    QCOMPARE(order2, (QStringList{"note 1", "5", "note 5"}));
}

void TestOutboxSender::failuresRetryWithBackoff()
{
    m_results->failNext(3);
    QVERIFY(m_sender->add(OutboxEntry::taskStatus(user, 4, 3, m_api->now)));
    drain();
    // Taken in the end: a refused result would stay refused until the worker sends it again.
    QCOMPARE(m_results->received().size(), 1);
    QCOMPARE(m_api->server.requests(QStringLiteral("/api/task/4")).size(), 4);
}

void TestOutboxSender::expiredSessionKeepsTheOutbox()
{
    m_api->settings.clear(); // signed out: no session to send with
    QVERIFY(m_sender->add(comment(4, QStringLiteral("kept"))));
    QTRY_VERIFY_WITH_TIMEOUT(m_api->host.sessionExpiredCalls >= 2, waitMs);
    QCOMPARE(m_sender->counts(), (OfflineStore::Counts{1, 0}));
    QVERIFY(m_results->received().isEmpty());

    m_api->store.store(APIData{m_api->server.baseUrl(), QStringLiteral("tok"), toDateTime(m_api->now - seconds(5))});
    m_sender->syncNow();
    drain();
    QCOMPARE(m_results->received("comment").size(), 1);
}

void TestOutboxSender::refusalStopsTheResult_data()
{
    QTest::addColumn<QString>("refused");
    QTest::addColumn<QStringList>("taken"); // of the results on task 5
    QTest::addColumn<int>("refusedCount");
    QTest::newRow("incident comment refused") << "comment" << QStringList{"status"} << 1;
    QTest::newRow("status change refused") << "status" << QStringList{"comment"} << 2;
}

void TestOutboxSender::refusalStopsTheResult()
{
    QFETCH(QString, refused);
    QFETCH(int, refusedCount);
    m_results->refuse(refused, 5);
    const auto block = m_sender->add(comment(5, QStringLiteral("Gate locked"), OutboxEntry::Kind::block));
    const auto later = m_sender->add(OutboxEntry::taskStatus(user, 5, 2, m_api->now));
    QVERIFY(m_sender->add(comment(6, QStringLiteral("other task"))));
    QVERIFY(block && later);
    drain();
    QCOMPARE(m_sender->counts(), (OfflineStore::Counts{0, refusedCount}));

    QStringList onTask5;
    for (const OutboxServer::Received &r : m_results->received()) {
        if (r.taskId == 5)
            onTask5 << r.kind;
    }
    QTEST(onTask5, "taken");
    for (const OutboxServer::Received &r : m_results->received("status"))
        QCOMPARE(r.body["task_status_id"].toInt(), 2); // never the block's change
    const auto onTask6 = [](const OutboxServer::Received &r) { return r.taskId == 6; };
    QVERIFY(std::ranges::any_of(m_results->received("comment"), onTask6)); // other tasks go on
    const auto notSent = m_store->entry(block->id);
    QCOMPARE(notSent->state, OutboxEntry::State::refused);
    QCOMPARE(notSent->reason, QStringLiteral("Task not found"));
    QCOMPARE(notSent->stepsDone, refused == QLatin1String("status") ? 1 : 0);
}

void TestOutboxSender::refusedResultSentAgainOrDiscarded()
{
    m_results->refuse(QStringLiteral("status"), 5);
    const auto block = m_sender->add(comment(5, QStringLiteral("Gate locked"), OutboxEntry::Kind::block));
    const auto other = m_sender->add(OutboxEntry::taskStatus(user, 5, 2, m_api->now));
    QTRY_COMPARE_WITH_TIMEOUT(m_sender->counts(), (OfflineStore::Counts{0, 2}), waitMs);

    m_results->acceptAll();
    QVERIFY(m_sender->retry(block->id));
    QVERIFY(m_sender->discard(other->id));
    QVERIFY(!m_sender->retry(other->id));
    drain();
    QCOMPARE(m_sender->counts(), (OfflineStore::Counts{0, 0}));
    // Only the status change went again: the comment was on the server already.
    QCOMPARE(m_results->received("comment").size(), 1);
    QCOMPARE(m_results->received("status").size(), 1);
    QCOMPARE(m_results->received("status").first().body["task_status_id"].toInt(), 5);
}

void TestOutboxSender::commentIsNeverPostedTwice_data()
{
    QTest::addColumn<QString>("lost");
    QTest::addColumn<int>("posts");
    QTest::newRow("answer lost") << "answer" << 1;
    QTest::newRow("request lost") << "request" << 2;
    QTest::newRow("restart after the post") << "restart" << 0;
}

void TestOutboxSender::commentIsNeverPostedTwice()
{
    QFETCH(QString, lost);
    QFETCH(int, posts);
    OutboxEntry entry = comment(9, QStringLiteral("Pump noisy"));
    if (lost == QLatin1String("answer")) {
        m_results->loseNextAnswer(900); // the server has it; the answer times out
    } else if (lost == QLatin1String("request")) {
        m_results->failNext(1);
    } else {
        // An earlier process posted it and was killed before it wrote "sent".
        m_sender->setUserId(std::nullopt);
        auto saved = m_sender->add(entry);
        QVERIFY(saved);
        saved->state = OutboxEntry::State::attempted;
        QVERIFY(m_store->update(*saved));
        m_results->seedComment(9, saved->commentToSend().toJson());
        m_sender->setUserId(user);
    }
    if (lost != QLatin1String("restart"))
        QVERIFY(m_sender->add(entry));
    drain();
    QCOMPARE(m_results->received("comment").size(), 1);
    QCOMPARE(m_api->server.requests(QStringLiteral("/api/comment")).size(), posts);
    QCOMPARE(m_results->threadReads(), 1);
}

void TestOutboxSender::usersAreKeptApart()
{
    m_sender->setUserId(8);
    QVERIFY(m_sender->add(OutboxEntry::taskStatus(user, 3, 2, m_api->now))); // made by user 7 earlier
    QCOMPARE(m_sender->counts(), (OfflineStore::Counts{0, 0}));
    QVERIFY(m_sender->entries().isEmpty());
    // User 8's own result goes; user 7's does not.
    QVERIFY(m_sender->add(OutboxEntry::taskStatus(8, 4, 2, m_api->now)));
    drain();
    QCOMPARE(m_results->received().size(), 1);
    QCOMPARE(m_results->received().first().body["updater_user_id"].toInt(), 8);

    m_sender->setUserId(std::nullopt);
    QVERIFY(m_sender->entries().isEmpty());
    m_sender->setUserId(user);
    QCOMPARE(m_sender->entries().size(), 1);
    drain();
    QCOMPARE(m_results->received().size(), 2);
    QCOMPARE(m_results->received().last().body["updater_user_id"].toInt(), user);
}

void TestOutboxSender::noTokenIsWritten()
{
    const QString token = QStringLiteral("token-9f3c51d2e7");
    m_api->store.store(APIData{m_api->server.baseUrl(), token, toDateTime(m_api->now - seconds(5))});
    m_results->failNext(1);
    QVERIFY(m_sender->add(comment(2, QStringLiteral("with a token about")), test::solidPicture()));
    QVERIFY(m_sender->add(OutboxEntry::taskStatus(user, 2, 3, m_api->now)));
    QVERIFY(m_store->storeAnswer(user, QStringLiteral("api/task/2/comments"), "{}", m_api->now));
    drain();
    QDirIterator files(m_dir->path(), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY2(!file.readAll().contains(token.toUtf8()), qPrintable(file.fileName()));
    }
}

void TestOutboxSender::answersAreKeptForOfflineOpening()
{
    m_api->server.on("GET", QStringLiteral("/api/settings-constants"), test::CannedResponse{200, test::settingsBody});
    m_api->manager.setAnswerObserver([this](const Router &route, const QByteArray &body) {
        QVERIFY(m_store->storeAnswer(user, route.path(), body, m_api->now));
    });
    bool answered = false;
    m_api->manager.request<SettingsAndConstantsResponse>(
        Router::getSettingsAndConstants(), ApiQueue::shared(), this,
        [&](const Result<SettingsAndConstantsResponse> &result) {
            answered = result.isSuccess();
            // The answer is kept before the caller sees it.
            QVERIFY(m_store->cachedAnswer(user, QStringLiteral("api/settings-constants")));
        });
    QTRY_VERIFY_WITH_TIMEOUT(answered, waitMs);
    QCOMPARE(m_store->cachedAnswer(user, QStringLiteral("api/settings-constants"))->body, test::settingsBody);

    QVERIFY(m_sender->add(OutboxEntry::taskStatus(user, 2, 3, m_api->now))); // results are not answers to keep
    drain();
    QVERIFY(!m_store->cachedAnswer(user, QStringLiteral("api/task/2")));
}

QTEST_MAIN(TestOutboxSender)
#include "tst_outboxsender.moc"
