#include "demo/server/demodata.h"
#include "demo/server/demopictures.h"

#include <QImage>
#include <QSet>
#include <QTest>

using ravelin::DemoData;

namespace {
const QDateTime kNow(QDate(2026, 3, 14), QTime(9, 41, 27), Qt::UTC);
}

class TestDemoData : public QObject
{
    Q_OBJECT

private slots:
    void constantsOnlyHasNoPeopleOrTasks();
    void seededRecordsHangTogether();
    void seededDatesLieBeforeNow();
    void seededDataCoversEveryStatusPerWorker();
    void seedingIsRepeatable();
    void itemCountsFollowItems();
    void thumbnailsFitTheThumbnailBox_data();
    void thumbnailsFitTheThumbnailBox();
};

void TestDemoData::constantsOnlyHasNoPeopleOrTasks()
{
    const DemoData data = DemoData::constantsOnly();
    QCOMPARE(data.taskStatuses.size(), 6);
    QCOMPARE(data.itemStatuses.size(), 4);
    QVERIFY(!data.taskCategories.isEmpty());
    QVERIFY(data.users.isEmpty());
    QVERIFY(data.tasks.isEmpty());
    QVERIFY(data.pictures.isEmpty());
}

void TestDemoData::seededRecordsHangTogether()
{
    const DemoData data = DemoData::seeded(kNow);
    QVERIFY(data.tasks.size() >= 25);

    QSet<qint64> taskIds;
    QSet<qint64> categoryIds;
    for (const auto &category : data.taskCategories)
        categoryIds.insert(category.id);
    for (const auto &task : data.tasks) {
        QVERIFY(!taskIds.contains(task.id));
        taskIds.insert(task.id);
        QVERIFY(categoryIds.contains(task.taskCategoryId));
        QVERIFY(task.assignedUserId && data.user(*task.assignedUserId));
        QVERIFY(data.user(task.ownerId));
        QVERIFY(!data.itemsOf(task.id).isEmpty());
    }

    QSet<qint64> itemIds;
    QSet<QString> qrCodes;
    for (const auto &item : data.items) {
        QVERIFY(!itemIds.contains(item.id));
        itemIds.insert(item.id);
        QVERIFY(taskIds.contains(item.taskId));
        if (item.qrCode) {
            QVERIFY(!qrCodes.contains(*item.qrCode));
            qrCodes.insert(*item.qrCode);
        }
    }
    QVERIFY(!qrCodes.isEmpty());
    QVERIFY(qrCodes.size() < itemIds.size());

    QSet<qint64> commentIds;
    int withPicture = 0;
    int incidents = 0;
    for (const auto &comment : data.comments) {
        QVERIFY(!commentIds.contains(comment.id));
        commentIds.insert(comment.id);
        QVERIFY(taskIds.contains(comment.taskId));
        QVERIFY(data.user(comment.userId));
        if (comment.itemId) {
            QVERIFY(data.item(*comment.itemId));
            QCOMPARE(data.item(*comment.itemId)->taskId, comment.taskId);
        }
        incidents += comment.isIncident ? 1 : 0;
        for (const auto &media : comment.media) {
            QCOMPARE(media.commentId, comment.id);
            QVERIFY2(data.pictures.contains(media.path), qPrintable(media.path));
            ++withPicture;
        }
    }
    QVERIFY(withPicture >= 3);
    QVERIFY(incidents >= 2);
    QCOMPARE(data.nextCommentId(), *std::max_element(commentIds.begin(), commentIds.end()) + 1);
}

void TestDemoData::seededDatesLieBeforeNow()
{
    const DemoData data = DemoData::seeded(kNow);
    QDateTime earliest = kNow;
    for (const auto &task : data.tasks) {
        QVERIFY(task.dateCreated < kNow);
        if (task.dateUpdated) {
            QVERIFY(*task.dateUpdated >= task.dateCreated);
            QVERIFY(*task.dateUpdated < kNow);
        }
        earliest = std::min(earliest, task.dateCreated);
    }
    // Spread over weeks, within the client's default window of 60 days.
    QVERIFY(earliest < kNow.addDays(-21));
    QVERIFY(earliest > kNow.addDays(-60));

    QSet<QDate> commentDays;
    for (const auto &comment : data.comments) {
        QVERIFY(comment.dateCreated < kNow);
        QVERIFY(comment.dateCreated >= data.task(comment.taskId)->dateCreated);
        commentDays.insert(comment.dateCreated.date());
    }
    QVERIFY(commentDays.size() >= 5);
}

void TestDemoData::seededDataCoversEveryStatusPerWorker()
{
    const DemoData data = DemoData::seeded(kNow);
    int workers = 0;
    for (const auto &user : data.users) {
        if (!user.canSignIn)
            continue;
        ++workers;
        QSet<int> statuses;
        QSet<int> itemStatuses;
        for (const auto &task : data.tasks) {
            if (task.assignedUserId != user.id)
                continue;
            statuses.insert(task.taskStatusId);
            for (const auto &item : data.itemsOf(task.id))
                itemStatuses.insert(item.itemStatusId);
        }
        QCOMPARE(statuses, (QSet<int>{1, 2, 3, 4, 5, 6}));
        QCOMPARE(itemStatuses, (QSet<int>{1, 2, 3}));
    }
    QCOMPARE(workers, 3);
}

void TestDemoData::seedingIsRepeatable()
{
    const DemoData first = DemoData::seeded(kNow);
    const DemoData second = DemoData::seeded(kNow);
    QCOMPARE(first.tasks.size(), second.tasks.size());
    for (qsizetype i = 0; i < first.tasks.size(); ++i) {
        QCOMPARE(first.tasks.at(i).name, second.tasks.at(i).name);
        QCOMPARE(first.tasks.at(i).dateCreated, second.tasks.at(i).dateCreated);
    }
    const DemoData later = DemoData::seeded(kNow.addDays(10));
    QCOMPARE(later.tasks.first().dateCreated.daysTo(kNow.addDays(10)),
             first.tasks.first().dateCreated.daysTo(kNow));
}

void TestDemoData::itemCountsFollowItems()
{
    DemoData data = DemoData::seeded(kNow);
    const qint64 taskId = data.tasks.first().id;
    const auto before = data.itemCounts(taskId);
    QCOMPARE(before[0] + before[1] + before[2], int(data.itemsOf(taskId).size()));

    auto *item = data.item(data.itemsOf(taskId).first().id);
    const int oldStatus = item->itemStatusId;
    const int newStatus = oldStatus == 2 ? 1 : 2;
    item->itemStatusId = newStatus;
    auto expected = before;
    --expected.at(static_cast<size_t>(oldStatus - 1));
    ++expected.at(static_cast<size_t>(newStatus - 1));
    QCOMPARE(data.itemCounts(taskId), expected);
    QCOMPARE(data.itemCounts(999999), (std::array<int, 3>{0, 0, 0}));
}

void TestDemoData::thumbnailsFitTheThumbnailBox_data()
{
    QTest::addColumn<QSize>("source");
    QTest::addColumn<QSize>("thumbnail");

    QTest::newRow("4:3") << QSize(800, 600) << QSize(160, 120);
    QTest::newRow("wide") << QSize(1600, 400) << QSize(160, 40);
    QTest::newRow("tall") << QSize(300, 900) << QSize(40, 120);
    QTest::newRow("small") << QSize(80, 60) << QSize(160, 120);
}

void TestDemoData::thumbnailsFitTheThumbnailBox()
{
    QFETCH(QSize, source);
    QFETCH(QSize, thumbnail);
    QImage image(source, QImage::Format_RGB32);
    image.fill(Qt::red);
    QCOMPARE(ravelin::demopictures::thumbnailOf(image).size(), thumbnail);

    const QByteArray jpeg = ravelin::demopictures::encodeJpeg(ravelin::demopictures::drawScene(3, source));
    const auto decoded = ravelin::demopictures::decode(jpeg);
    QVERIFY(decoded);
    QCOMPARE(decoded->size(), source);
    QVERIFY(!ravelin::demopictures::decode("not a picture"));
}

QTEST_GUILESS_MAIN(TestDemoData)
#include "tst_demodata.moc"
