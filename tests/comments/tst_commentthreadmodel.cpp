#include "comments/commentsvm.h"
#include "comments/commentthreadmodel.h"
#include "comments/taskcommentpayload.h"
#include "comments/taskscommentsresponse.h"
#include "comments/thumbnailcache.h"
#include "support/apiharness.h"
#include "support/fatalerrortrap.h"
#include "support/fixtures.h"
#include "support/testpicker.h"

#include <QAbstractItemModelTester>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

using namespace ravelin;
using namespace ravelin::test;
using namespace std::chrono;

namespace {

const QString thumbnails = QStringLiteral("/files/thumbnails/thumb_");

QByteArray commentJson(const QByteArray &extra)
{
    QByteArray members
        = R"("userId":3,"dateCreated":"2026-11-20T10:15:30.123Z","assetName":"Truck 12","assetIcon":"truck","isIncident":"0")";
    if (!extra.isEmpty())
        members += ',' + extra;
    return R"({"success":true,"data":[{)" + members + "}]}";
}

CommentPtr decodeOne(const QByteArray &extra)
{
    return json::decode<TasksCommentsResponse>(commentJson(extra), NetworkManager::decodingOptions()).data.first();
}

} // namespace

class TestCommentThreadModel : public ViewModelTest<CommentsVM>
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { closeViewModel(); }

    void daysAndTimes();
    void answersTakenRowByRow_data();
    void answersTakenRowByRow();
    void picturesOnlyForTheRowsInSight();
    void failedPictureAskedForWhenItsRowComesBack();
    void cacheKeepsToItsBudget();

    void incidentFlagIsAString_data();
    void incidentFlagIsAString();
    void optionalMembers_data();
    void optionalMembers();
    void brokenMediaFailsTheAnswer();
    void payloadWireForm();
    void payloadTextAndTime_data();
    void payloadTextAndTime();
    void payloadWithoutTextStops();

private:
    // A comment `minutesAgo` before the harness's clock; with a picture when `path` is given.
    [[nodiscard]] CommentPtr comment(int minutesAgo, const QString &path = {}) const;
    // A thread model over these comments, watched by a model tester for as long as it lives.
    [[nodiscard]] std::unique_ptr<CommentThreadModel> threadModel(const QList<CommentPtr> &comments);
};

void TestCommentThreadModel::init()
{
    startHarness();
    m_api->server.onPrefix("GET", thumbnails, [](const RecordedRequest &request) {
        return request.path.contains(QStringLiteral("broken")) ? CannedResponse{500, {}, "image/jpeg"}
                                                               : CannedResponse{200, jpeg(), "image/jpeg"};
    });
    m_vm = std::make_unique<CommentsVM>(m_task, &m_api->manager, UsersData{});
}

CommentPtr TestCommentThreadModel::comment(int minutesAgo, const QString &path) const
{
    auto entry = std::make_shared<Comment>();
    entry->text = QStringLiteral("Comment from %1 minutes ago").arg(minutesAgo);
    entry->userId = 7;
    entry->assetName = QStringLiteral("Ann Rivers");
    entry->dateCreated = toDateTime(m_api->now - std::chrono::minutes(minutesAgo));
    if (!path.isEmpty()) {
        auto media = std::make_shared<Media>();
        media->path = path;
        entry->media.append(media);
    }
    return entry;
}

std::unique_ptr<CommentThreadModel> TestCommentThreadModel::threadModel(const QList<CommentPtr> &comments)
{
    m_vm->setComments(comments);
    auto model = std::make_unique<CommentThreadModel>(fixedClock(m_api->now));
    model->setViewModel(m_vm.get());
    new QAbstractItemModelTester(model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest, model.get());
    return model;
}

void TestCommentThreadModel::daysAndTimes()
{
    // Yesterday's day and its comment, then today's; only the newest comment shows its time.
    const auto model = threadModel({comment(1), comment(26 * 60)});
    using K = CommentThreadModel::RowKind;
    QList<K> kinds;
    for (int row = 0; row < model->rowCount(); ++row)
        kinds.append(model->index(row).data(CommentThreadModel::KindRole).value<K>());
    QCOMPARE(kinds, (QList<K>{K::dayHeader, K::comment, K::dayHeader, K::comment}));
    QCOMPARE(model->index(3).data().toString(), *comment(1)->text);
    QCOMPARE(model->index(3).data(CommentThreadModel::TimeTextRole).toString(), QStringLiteral("1 min ago"));
    QVERIFY(model->index(3).data(CommentThreadModel::ShowsTimeRole).toBool());
    QVERIFY(!model->index(1).data(CommentThreadModel::ShowsTimeRole).toBool());
}

void TestCommentThreadModel::answersTakenRowByRow_data()
{
    // Comments by how many minutes (or days, as 1440 minutes) ago they were sent.
    QTest::addColumn<QList<int>>("before");
    QTest::addColumn<QList<int>>("after");
    QTest::addColumn<QStringList>("removed");
    QTest::addColumn<QStringList>("inserted");

    QTest::newRow("the same") << QList<int>{30, 20} << QList<int>{30, 20} << QStringList{} << QStringList{};
    QTest::newRow("a new comment") << QList<int>{30, 20} << QList<int>{30, 20, 1} << QStringList{}
                                   << QStringList{"3-3"};
    // Yesterday's comment goes with its day's header.
    QTest::newRow("a day gone") << QList<int>{2 * 1440, 20} << QList<int>{20} << QStringList{"0-1"} << QStringList{};
    QTest::newRow("a new day") << QList<int>{20} << QList<int>{2 * 1440, 20} << QStringList{} << QStringList{"0-1"};
}

void TestCommentThreadModel::answersTakenRowByRow()
{
    QFETCH(QList<int>, before);
    QFETCH(QList<int>, after);
    const auto comments
        = [this](const QList<int> &minutes) { return mapped(minutes, [this](int ago) { return comment(ago); }); };

    const auto model = threadModel(comments(before));
    QSignalSpy resets(model.get(), &QAbstractItemModel::modelReset);
    QSignalSpy removes(model.get(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy inserts(model.get(), &QAbstractItemModel::rowsInserted);

    m_vm->setComments(comments(after));
    model->reload();

    QCOMPARE(resets.size(), 0);
    QTEST(rowRanges(removes), "removed");
    QTEST(rowRanges(inserts), "inserted");
    QCOMPARE(model->index(model->lastCommentRow()).data().toString(), *m_vm->comments().first()->text);
}

void TestCommentThreadModel::picturesOnlyForTheRowsInSight()
{
    // One day: a header, then twenty comments a minute apart, each with the picture "p/<n>.jpg".
    QList<CommentPtr> comments;
    for (int n = 1; n <= 20; ++n)
        comments.append(comment(20 - n, QStringLiteral("p/%1.jpg").arg(n)));
    const auto model = threadModel(comments);
    QSignalSpy changes(model.get(), &QAbstractItemModel::dataChanged);

    // Reading every row, pictures included, asks for nothing.
    for (int row = 0; row < model->rowCount(); ++row)
        QVERIFY(model->index(row).data(CommentThreadModel::ThumbnailRole).isNull());
    model->setRowsInSight(1, 3);
    QTRY_COMPARE_WITH_TIMEOUT(changes.size(), 3, timeoutMs);
    for (const QList<QVariant> &signal : changes)
        QCOMPARE(signal.at(2).value<QList<int>>(),
                 (QList<int>{CommentThreadModel::ThumbnailRole, CommentThreadModel::PictureFailedRole}));
    QVERIFY(!model->index(2).data(CommentThreadModel::ThumbnailRole).value<QImage>().isNull());

    // Scrolling on by one row asks for the one new picture only.
    model->setRowsInSight(2, 4);
    QTRY_COMPARE_WITH_TIMEOUT(changes.size(), 4, timeoutMs);
    model->setRowsInSight(1, 4);
    model->reload();
    QCOMPARE(model->thumbnails()->requestCount(), 4);
    QCOMPARE(m_api->server.requests().size(), 4);
    QCOMPARE(m_api->server.requests(thumbnails + QStringLiteral("p/1.jpg")).size(), 1);
}

void TestCommentThreadModel::failedPictureAskedForWhenItsRowComesBack()
{
    const auto model
        = threadModel({comment(2, QStringLiteral("p/broken.jpg")), comment(1, QStringLiteral("p/fine.jpg"))});
    const QString broken = thumbnails + QStringLiteral("p/broken.jpg");

    model->setRowsInSight(0, 1);
    QTRY_VERIFY_WITH_TIMEOUT(model->index(1).data(CommentThreadModel::PictureFailedRole).toBool(), timeoutMs);
    // Still in sight: not asked for again.
    model->setRowsInSight(0, 1);
    model->setRowsInSight(1, 2);
    QCOMPARE(model->thumbnails()->requestCount(), 2);
    // Out of sight and back: asked for again.
    model->setRowsInSight(2, 2);
    model->setRowsInSight(1, 2);
    QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requests(broken).size(), 2, timeoutMs);
}

void TestCommentThreadModel::cacheKeepsToItsBudget()
{
    QImage picture(QSize(10, 10), QImage::Format_ARGB32);
    picture.fill(Qt::red);
    int loads = 0;
    ThumbnailCache cache(
        [&](const QString &, QObject *, const std::function<void(std::optional<QImage>)> &done) {
            ++loads;
            done(picture);
        },
        3 * picture.sizeInBytes());
    for (const char *path : {"a", "b", "c", "d"})
        QVERIFY(cache.request(QString::fromLatin1(path)));
    QVERIFY(cache.keptBytes() <= cache.budget());
    // The least recently shown went first; kept ones are not asked for again.
    QVERIFY(cache.thumbnail(QStringLiteral("a")).isNull());
    QVERIFY(!cache.request(QStringLiteral("d")));
    QVERIFY(cache.request(QStringLiteral("a")));
    QCOMPARE(loads, 5);
}

void TestCommentThreadModel::incidentFlagIsAString_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("incident");
    QTest::newRow("\"0\"") << QByteArray(R"("0")") << false;
    QTest::newRow("\"1\"") << QByteArray(R"("1")") << true;
    QTest::newRow("empty") << QByteArray(R"("")") << true;
    QTest::newRow("\"false\"") << QByteArray(R"("false")") << true;
}

void TestCommentThreadModel::incidentFlagIsAString()
{
    QFETCH(QByteArray, value);
    QByteArray body = commentJson({});
    body.replace(R"("isIncident":"0")", "\"isIncident\":" + value);
    const auto comment = json::decode<TasksCommentsResponse>(body, NetworkManager::decodingOptions()).data.first();
    QTEST(comment->isIncident, "incident");

    // A boolean on the wire is not accepted.
    body.replace("\"isIncident\":" + value, R"("isIncident":true)");
    QVERIFY_THROWS_EXCEPTION(json::DecodingError,
                             (void)json::decode<TasksCommentsResponse>(body, NetworkManager::decodingOptions()));
}

void TestCommentThreadModel::optionalMembers_data()
{
    QTest::addColumn<QByteArray>("extra");
    QTest::addColumn<QString>("text"); // "<none>" for no text
    QTest::addColumn<QList<qint64>>("itemIds");
    QTest::addColumn<int>("mediaCount");
    QTest::newRow("nothing optional") << QByteArray() << "<none>" << QList<qint64>{} << 0;
    QTest::newRow("nulls") << QByteArray(R"("text":null,"itemId":null)") << "<none>" << QList<qint64>{} << 0;
    QTest::newRow("item and text") << QByteArray(R"("text":"Leak at valve","itemId":17)") << "Leak at valve"
                                   << QList<qint64>{17} << 0;
    QTest::newRow("empty media") << QByteArray(R"("media":[])") << "<none>" << QList<qint64>{} << 0;
    QTest::newRow("two pictures") << QByteArray(
        R"("media":[{"path":"a.jpg","dateCreated":"2026-11-20T10:15:31.000Z","commentId":5},
                                 {"path":"b.jpg","dateCreated":"2026-11-20T10:15:32.000Z","comment_id":5}])")
                                  << "<none>" << QList<qint64>{} << 2;
}

void TestCommentThreadModel::optionalMembers()
{
    QFETCH(QByteArray, extra);
    QFETCH(QString, text);
    QFETCH(QList<qint64>, itemIds);
    QFETCH(int, mediaCount);
    const CommentPtr c = decodeOne(extra);
    QCOMPARE(c->text.value_or(QStringLiteral("<none>")), text);
    QCOMPARE(c->itemIds, itemIds);
    QCOMPARE(c->media.size(), mediaCount);
    QCOMPARE(c->assetIcon, QStringLiteral("list_pin_truck"));
    QCOMPARE(c->dateCreated.toMSecsSinceEpoch(), 1795169730123);
    QCOMPARE(c->userId, 3);
}

void TestCommentThreadModel::brokenMediaFailsTheAnswer()
{
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)decodeOne(R"("media":[{"path":"a.jpg"}])"));
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)decodeOne(R"("media":{})"));
}

void TestCommentThreadModel::payloadWireForm()
{
    const TaskCommentPayload payload(QStringLiteral("ok"), 4, 9, std::nullopt, false, std::nullopt,
                                     TimePoint(milliseconds(1700000000000)));
    const QJsonObject wire = QJsonDocument::fromJson(payload.toJson()).object();
    const QJsonObject expected{{"text", "ok"},
                               {"task_id", 4},
                               {"user_id", 9},
                               {"item_id", QJsonValue::Null},
                               {"date_created", qint64(1700000000000)},
                               {"is_incident", false},
                               {"media_path", QJsonValue::Null}};
    QCOMPARE(wire, expected);
}

void TestCommentThreadModel::payloadTextAndTime_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("nanoseconds");
    QTest::addColumn<QString>("sentText");
    QTest::addColumn<qint64>("sentMillis");
    QTest::newRow("rounds up from .6") << "a" << qint64(1700000000001600000) << "a" << qint64(1700000000002);
    QTest::newRow("rounds down below .5") << "a" << qint64(1700000000001400000) << "a" << qint64(1700000000001);
    QTest::newRow("half rounds away from zero") << "a" << qint64(1700000000001500000) << "a" << qint64(1700000000002);
    QTest::newRow("empty text becomes a space") << "" << qint64(0) << " " << qint64(0);
    QTest::newRow("blank text is kept") << "  " << qint64(0) << "  " << qint64(0);
}

void TestCommentThreadModel::payloadTextAndTime()
{
    QFETCH(QString, text);
    QFETCH(qint64, nanoseconds);
    const TaskCommentPayload payload(
        text, 1, 2, 3, true, QStringLiteral("m.jpg"),
        TimePoint(duration_cast<system_clock::duration>(std::chrono::nanoseconds(nanoseconds))));
    QTEST(payload.text, "sentText");
    QTEST(payload.dateCreated, "sentMillis");
    const QJsonObject wire = payload.encode();
    QCOMPARE(wire.value("item_id").toInteger(), 3);
    QCOMPARE(wire.value("media_path").toString(), QStringLiteral("m.jpg"));
}

void TestCommentThreadModel::payloadWithoutTextStops()
{
    test::FatalErrorTrap trap;
    QVERIFY_THROWS_EXCEPTION(test::FatalErrorRaised,
                             TaskCommentPayload(std::nullopt, 1, 2, std::nullopt, false, std::nullopt, TimePoint()));
}

QTEST_GUILESS_MAIN(TestCommentThreadModel)
#include "tst_commentthreadmodel.moc"
