#include "api/memoryofflinestore.h"
#include "api/sqliteofflinestore.h"
#include "support/outboxresults.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

using namespace ravelin;
using namespace std::chrono;

namespace {

const TimePoint now = TimePoint(milliseconds(1795169730123));

} // namespace

class TestOfflineStore : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_folder = m_dir->filePath(QStringLiteral("offline"));
    }
    void connectionAndFileSettings();
    void everyKindSurvivesReopening_data();
    void everyKindSurvivesReopening();
    void progressAndRefusal();
    void sentRowLeavesWithItsPicture();
    void whatAKillLeftIsTidiedAtOpen();
    void newerSchemaIsNotOpened();
    void cacheKeepsTheLatestPerUserAndRoute_data();
    void cacheKeepsTheLatestPerUserAndRoute();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_folder;
};

void TestOfflineStore::connectionAndFileSettings()
{
    SqliteOfflineStore store(m_folder);
    QVERIFY(store.isOpen());
    QCOMPARE(store.pragma(QStringLiteral("journal_mode")).toString(), QStringLiteral("wal"));
    QCOMPARE(store.pragma(QStringLiteral("synchronous")).toInt(), 2); // FULL
    QCOMPARE(store.pragma(QStringLiteral("foreign_keys")).toInt(), 1);
    QVERIFY(store.pragma(QStringLiteral("busy_timeout")).toInt() > 0);
    QCOMPARE(store.pragma(QStringLiteral("user_version")).toInt(), SqliteOfflineStore::schemaVersion);
    QVERIFY(store.add(OutboxEntry::taskStatus(7, 1, 3, now), {}));

    const QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    for (const QString &suffix : {QString(), QStringLiteral("-wal")}) {
        const QFileInfo file(store.databasePath() + suffix);
        QVERIFY2(file.exists(), qPrintable(file.filePath()));
        QCOMPARE(file.permissions(), ownerOnly);
    }
}

void TestOfflineStore::everyKindSurvivesReopening_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QByteArray>("picture");
    QTest::newRow("task status") << int(OutboxEntry::Kind::taskStatus) << QByteArray();
    QTest::newRow("items with a picture") << int(OutboxEntry::Kind::itemsUpdate) << QByteArray("jpeg-bytes");
    QTest::newRow("comment") << int(OutboxEntry::Kind::comment) << QByteArray();
    QTest::newRow("block with a picture") << int(OutboxEntry::Kind::block) << QByteArray("jpeg-bytes");
}

void TestOfflineStore::everyKindSurvivesReopening()
{
    QFETCH(int, kind);
    QFETCH(QByteArray, picture);
    OutboxEntry made = test::sampleResult(OutboxEntry::Kind(kind), 7, 12, QStringLiteral("Valve leaks"), 5, now);
    if (made.items)
        made.items->items.append(ItemPayload{32, 1, std::nullopt, std::nullopt}); // an item without a note
    made.uploadName = QStringLiteral("7_1795169730123.0_photo_3.jpg");

    qint64 id = 0;
    {
        SqliteOfflineStore store(m_folder);
        const auto saved = store.add(made, picture);
        QVERIFY(saved);
        id = saved->id;
    }
    SqliteOfflineStore reopened(m_folder);
    const QList<OutboxEntry> entries = reopened.entries(7);
    QCOMPARE(entries.size(), 1);
    const OutboxEntry &read = entries.first();
    QCOMPARE(read.id, id);
    QCOMPARE(read.kind, made.kind);
    QCOMPARE(read.taskId, 12);
    QCOMPARE(read.statusId, made.statusId);
    QCOMPARE(read.dateCreated, made.dateCreated);
    QCOMPARE(read.state, OutboxEntry::State::waiting);
    QCOMPARE(read.uploadName, made.uploadName);
    QCOMPARE(read.items.has_value(), made.items.has_value());
    if (made.items)
        QCOMPARE(read.itemsToSend(), made.itemsToSend());
    QCOMPARE(read.commentPayload.has_value(), made.commentPayload.has_value());
    if (made.commentPayload)
        QCOMPARE(read.commentToSend().toJson(), made.commentToSend().toJson());
    QCOMPARE(read.hasPicture(), !picture.isEmpty());
    QCOMPARE(reopened.picture(read), picture);
    QVERIFY(reopened.entries(8).isEmpty());
}

void TestOfflineStore::progressAndRefusal()
{
    SqliteOfflineStore store(m_folder);
    auto block = store.add(test::sampleResult(OutboxEntry::Kind::block, 7, 3, QStringLiteral("Locked"), 5, now),
                           QByteArray("jpeg"));
    auto status = store.add(OutboxEntry::taskStatus(7, 4, 3, now), {});
    QVERIFY(block && status);
    QCOMPARE(store.counts(7), (OfflineStore::Counts{2, 0}));

    block->state = OutboxEntry::State::attempted;
    block->mediaPath = QStringLiteral("uploads/a.jpg");
    block->attempts = 1;
    QVERIFY(store.update(*block));
    status->state = OutboxEntry::State::refused;
    status->reason = QStringLiteral("Task not found");
    QVERIFY(store.update(*status));

    const auto read = store.entry(block->id);
    QVERIFY(read);
    QCOMPARE(read->state, OutboxEntry::State::attempted);
    QCOMPARE(read->mediaPath, std::optional<QString>(QStringLiteral("uploads/a.jpg")));
    QCOMPARE(read->commentToSend().mediaPath, read->mediaPath);
    QCOMPARE(store.entry(status->id)->reason, QStringLiteral("Task not found"));
    QCOMPARE(store.counts(7), (OfflineStore::Counts{1, 1}));
    QCOMPARE(store.counts(8), (OfflineStore::Counts{0, 0}));
}

void TestOfflineStore::sentRowLeavesWithItsPicture()
{
    SqliteOfflineStore store(m_folder);
    auto entry
        = store.add(test::sampleResult(OutboxEntry::Kind::itemsUpdate, 7, 2, QStringLiteral("Gauge replaced"), 31, now),
                    QByteArray("jpeg"));
    QVERIFY(entry);
    QCOMPARE(QDir(store.pictureFolder()).entryList(QDir::Files).size(), 1);
    entry->state = OutboxEntry::State::sent;
    QVERIFY(store.update(*entry));
    QVERIFY(!store.entry(entry->id));
    QVERIFY(QDir(store.pictureFolder()).entryList(QDir::Files).isEmpty());
    QCOMPARE(store.counts(7), (OfflineStore::Counts{0, 0}));
}

void TestOfflineStore::whatAKillLeftIsTidiedAtOpen()
{
    OutboxEntry saved;
    QString pictures;
    {
        SqliteOfflineStore store(m_folder);
        saved = store
                    .add(test::sampleResult(OutboxEntry::Kind::comment, 7, 2, QStringLiteral("x"), 0, now),
                         QByteArray("jpeg"))
                    .value();
        pictures = store.pictureFolder();
    }
    // What a kill leaves: a row that committed while the rename of its picture
    // did not reach the disk, a half-written picture, and one whose row never committed.
    const QDir folder(pictures);
    QVERIFY(QFile::rename(folder.filePath(saved.pictureFile), folder.filePath(saved.pictureFile + ".part")));
    for (const QString &stray : {QStringLiteral("a.jpg.part"), QStringLiteral("b.jpg")}) {
        QFile file(folder.filePath(stray));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    SqliteOfflineStore reopened(m_folder);
    QCOMPARE(folder.entryList(QDir::Files), QStringList{saved.pictureFile});
    QCOMPARE(reopened.picture(saved), QByteArray("jpeg"));
}

void TestOfflineStore::newerSchemaIsNotOpened()
{
    {
        // The file as a later release leaves it.
        SqliteOfflineStore store(m_folder);
        (void)store.pragma(QStringLiteral("user_version=99"));
        QCOMPARE(store.pragma(QStringLiteral("user_version")).toInt(), 99);
    }
    SqliteOfflineStore newer(m_folder);
    QVERIFY(!newer.isOpen());
    QVERIFY(!newer.add(OutboxEntry::taskStatus(7, 1, 3, now), {}));
}

void TestOfflineStore::cacheKeepsTheLatestPerUserAndRoute_data()
{
    QTest::addColumn<bool>("onDisk");
    QTest::newRow("sqlite") << true;
    QTest::newRow("memory") << false;
}

void TestOfflineStore::cacheKeepsTheLatestPerUserAndRoute()
{
    QFETCH(bool, onDisk);
    std::unique_ptr<OfflineStore> store;
    if (onDisk)
        store = std::make_unique<SqliteOfflineStore>(m_folder);
    else
        store = std::make_unique<MemoryOfflineStore>();
    const QString items = QStringLiteral("api/items/taskId/4");
    QVERIFY(!store->cachedAnswer(7, items));
    QVERIFY(store->storeAnswer(7, items, "first", now));
    QVERIFY(store->storeAnswer(7, items, "second", now + minutes(10)));
    QVERIFY(store->storeAnswer(8, items, "other user", now));
    const auto cached = store->cachedAnswer(7, items);
    QVERIFY(cached);
    QCOMPARE(cached->body, QByteArray("second"));
    QVERIFY(cached->fetchedAt == now + minutes(10));
    QCOMPARE(store->cachedAnswer(8, items)->body, QByteArray("other user"));
    QVERIFY(!store->cachedAnswer(7, QStringLiteral("api/task/4/comments")));
}

QTEST_GUILESS_MAIN(TestOfflineStore)
#include "tst_offlinestore.moc"
