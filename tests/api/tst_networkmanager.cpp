#include "comments/posttaskscommentresponse.h"
#include "comments/taskcommentpayload.h"
#include "items/itemsupdatepayload.h"
#include "support/apiharness.h"
#include "support/logcapture.h"
#include "support/testpicker.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <QTest>
#include <QThread>
#include <QUrlQuery>

using namespace ravelin;
using namespace std::chrono;
using test::CannedResponse;
using test::RecordedRequest;

namespace {

constexpr int answerTimeoutMs = 10000;
const TimePoint now = TimePoint(milliseconds(1795169730123)); // the harness's clock

} // namespace

class TestNetworkManager : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_api = std::make_unique<test::ApiHarness>(); }
    void cleanup() { m_api.reset(); }
    void everyRouteOnTheWire_data();
    void everyRouteOnTheWire();
    void staleTokenIsRegeneratedFirst();
    void statusMapping_data();
    void statusMapping();
    void noSessionFailsWithoutNetwork();
    void closedReceiverIsNotCalledBack();
    void commentWithPhotoUploadsFirst_data();
    void commentWithPhotoUploadsFirst();
    void downloadImage();
    void photoFileName_data();
    void photoFileName();

private:
    void storeSession(TimePoint stamped, const QString &token)
    {
        m_api->store.store(APIData{m_api->server.baseUrl(), token, toDateTime(stamped)});
    }

    std::unique_ptr<test::ApiHarness> m_api;
};

void TestNetworkManager::everyRouteOnTheWire_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QByteArray>("bodyKey"); // a member the JSON body must have, or empty for no body

    // The token, settings and file routes go out in staleTokenIsRegeneratedFirst,
    // statusMapping and downloadImage.
    const QStringList names{"getAllTasks",       "getItems",        "updateTaskStatus",
                            "updateItemsStatus", "getTaskComments", "postComment"};
    const QList<std::tuple<QByteArray, QString, QString, QByteArray>> expected{
        {"GET", "/api/tasks/assigned-user/7",
         "dateStart=1&dateEnd=2&priority=1&task_category_id=4&orderBy=name&sortBy=ASC", ""},
        {"GET", "/api/items/taskId/12", "", ""},
        {"PUT", "/api/task/7", "", "assigned_user_id"},
        {"PUT", "/api/item/status", "", "updater_user_id"},
        {"GET", "/api/task/42/comments", "", ""},
        {"POST", "/api/comment", "", "date_created"},
    };
    for (int i = 0; i < names.size(); ++i) {
        const auto &[method, path, query, bodyKey] = expected.at(i);
        QTest::newRow(qPrintable(names.at(i))) << i << method << path << query << bodyKey;
    }
}

void TestNetworkManager::everyRouteOnTheWire()
{
    QFETCH(int, index);
    QFETCH(QByteArray, method);
    QFETCH(QString, path);
    QFETCH(QString, query);
    QFETCH(QByteArray, bodyKey);

    const QList<Router> routes{
        Router::getAllTasks(7, {1, 2, TaskPriority::high, {4, "Pumps"}, SortKey::name, SortOrder::ascending}),
        Router::getItems(12),
        Router::updateTaskStatus(7, 3, 11),
        Router::updateItemsStatus(ItemsUpdatePayload{4, 9, {}}),
        Router::getTaskComments(42),
        Router::postComment(TaskCommentPayload(QStringLiteral("x"), 4, 9, std::nullopt, false, std::nullopt, now)),
    };
    m_api->server.on(method, path, CannedResponse{200, R"({"success":true})"});
    const auto result = m_api->answer<PostTasksCommentResponse>(routes.at(index));
    QVERIFY(result.isSuccess());

    const QList<RecordedRequest> received = m_api->server.requests();
    QCOMPARE(received.size(), 1);
    const RecordedRequest &r = received.first();
    QCOMPARE(r.method, method);
    QCOMPARE(r.path, path);
    QUrlQuery sentQuery;
    sentQuery.setQueryItems(r.query);
    QCOMPARE(sentQuery.toString(), query);
    QCOMPARE(r.header("Authorization"), QByteArray("Bearer tok"));
    QCOMPARE(r.header("Accept-Type"), QByteArray("application/json"));
    QCOMPARE(r.header("Content-Type"), QByteArray("application/json"));
    if (bodyKey.isEmpty()) {
        QVERIFY(r.body.isEmpty());
    } else {
        QVERIFY(QJsonDocument::fromJson(r.body).object().contains(QString::fromLatin1(bodyKey)));
    }
}

void TestNetworkManager::staleTokenIsRegeneratedFirst()
{
    // Which ages are stale: tst_apidata tokenFreshness.
    storeSession(now - seconds(14400), QStringLiteral("old"));
    m_api->server.on("GET", "/api/regenerate-token", CannedResponse{401, {}});
    m_api->server.on("GET", "/api/items/taskId/1", CannedResponse{200, R"({"success":true})"});
    test::LogCapture log;

    // Refused: the session ends, and the call itself never goes out.
    const auto refused = m_api->answer<PostTasksCommentResponse>(Router::getItems(1));
    QCOMPARE(refused.error(), ManagerErrors(ManagerErrors::Kind::invalidToken));
    QCOMPARE(m_api->host.sessionExpiredCalls, 1);
    QCOMPARE(m_api->server.requestCount(), 1);
    QCOMPARE(m_api->store.load()->tokenString, QStringLiteral("old"));

    // Regenerated: the new token is stored and the call goes out with it.
    m_api->server.on("GET", "/api/regenerate-token", CannedResponse{200, R"({"success":true,"data":"abc"})"});
    m_api->server.clearRequests();
    QVERIFY(m_api->answer<PostTasksCommentResponse>(Router::getItems(1)).isSuccess());
    const auto received = m_api->server.requests();
    QCOMPARE(received.size(), 2);
    QCOMPARE(received.at(0).path, QStringLiteral("/api/regenerate-token"));
    QCOMPARE(received.at(0).header("Authorization"), QByteArray("Bearer old"));
    QCOMPARE(received.at(1).path, QStringLiteral("/api/items/taskId/1"));
    QCOMPARE(received.at(1).header("Authorization"), QByteArray("Bearer abc"));
    const auto stored = m_api->store.load();
    QCOMPARE(stored->tokenString, QStringLiteral("abc"));
    QCOMPARE(stored->timestamp, toDateTime(now));
    QVERIFY(log.lines().contains(QStringLiteral("Current token abc")));
    QCOMPARE(m_api->host.sessionExpiredCalls, 1);
}

void TestNetworkManager::statusMapping_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<ManagerErrors>("error");
    QTest::newRow("401") << 401 << QByteArray() << ManagerErrors(ManagerErrors::Kind::invalidToken);
    QTest::newRow("404") << 404 << QByteArray("{}") << ManagerErrors(ManagerErrors::Kind::apiRouteError);
    QTest::newRow("302 without location") << 302 << QByteArray() << ManagerErrors::invalidStatusCode(302);
    QTest::newRow("204 empty body") << 204 << QByteArray() << ManagerErrors(ManagerErrors::Kind::invalidParsing);
    QTest::newRow("200 wrong shape") << 200 << QByteArray(R"({"ok":1})")
                                     << ManagerErrors(ManagerErrors::Kind::invalidParsing);
}

void TestNetworkManager::statusMapping()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    QFETCH(ManagerErrors, error);
    m_api->server.on("GET", "/api/settings-constants", CannedResponse{status, body});
    test::LogCapture log;
    const auto result = m_api->answer();
    QVERIFY(!result.isSuccess());
    QCOMPARE(result.error(), error);
    const bool parsing = error.kind() == ManagerErrors::Kind::invalidParsing;
    QCOMPARE(log.count(QStringLiteral("Could not translate the data to the requested type. Reason: ")),
             parsing ? 1 : 0);
}

void TestNetworkManager::noSessionFailsWithoutNetwork()
{
    m_api->settings.clear();
    test::LogCapture log;
    const auto result = m_api->answer();
    QCOMPARE(result.error(), ManagerErrors(ManagerErrors::Kind::apiRouteError));
    QCOMPARE(m_api->host.sessionExpiredCalls, 1);
    QCOMPARE(m_api->server.requestCount(), 0);
    QVERIFY(log.lines().contains(QStringLiteral("Couldnt find key")));

    // A destroyed delegate is let go of, and not told again.
    auto delegate = std::make_unique<test::FakeHost>();
    m_api->manager.setDelegate(delegate.get());
    delegate.reset();
    QCOMPARE(m_api->manager.delegate(), nullptr);
    QCOMPARE(m_api->answer().error(), ManagerErrors(ManagerErrors::Kind::apiRouteError));
}

void TestNetworkManager::closedReceiverIsNotCalledBack()
{
    m_api->server.on("GET", "/api/settings-constants", [](const RecordedRequest &) {
        QThread::msleep(100);
        return CannedResponse{200, test::settingsBody};
    });
    bool called = false;
    auto receiver = std::make_unique<QObject>();
    m_api->manager.request<SettingsAndConstantsResponse>(Router::getSettingsAndConstants(), ApiQueue::shared(),
                                                         receiver.get(), [&](const auto &) { called = true; });
    receiver.reset();
    // A later request of the same route answered: the earlier answer has come and gone.
    const auto settled = [this] {
        QVERIFY(m_api->answer().isSuccess());
        ApiQueue::shared().waitForDone();
        QCoreApplication::processEvents();
    };
    settled();
    QVERIFY(!called);

    // Destroying the manager with a request under way is just as quiet.
    auto manager = std::make_unique<NetworkManager>(&m_api->network, &m_api->store, fixedClock(now));
    manager->request<SettingsAndConstantsResponse>(Router::getSettingsAndConstants(), ApiQueue::shared(), this,
                                                   [&](const auto &) { called = true; });
    manager.reset();
    settled();
    QVERIFY(!called);
}

void TestNetworkManager::commentWithPhotoUploadsFirst_data()
{
    QTest::addColumn<bool>("withPhoto");
    QTest::addColumn<bool>("uploadSucceeds");
    QTest::newRow("no photo") << false << true;
    QTest::newRow("photo stored") << true << true;
    QTest::newRow("photo upload failed: the answered path is sent all the same") << true << false;
}

void TestNetworkManager::commentWithPhotoUploadsFirst()
{
    QFETCH(bool, withPhoto);
    QFETCH(bool, uploadSucceeds);
    m_api->host.uploadSucceeds = uploadSucceeds;
    m_api->server.on("POST", "/api/comment", CannedResponse{200, R"({"success":false})"});
    test::LogCapture log;

    std::optional<QImage> photo;
    if (withPhoto)
        photo = test::solidPicture();
    std::optional<bool> posted;
    m_api->manager.postComment(4, 9, QString(), photo, true, this, [&](bool ok) { posted = ok; });
    QTRY_VERIFY_WITH_TIMEOUT(posted.has_value(), answerTimeoutMs);
    QVERIFY(*posted); // accepted whatever the answer's success flag says
    QVERIFY(log.lines().contains(QStringLiteral("Posted comments false")));

    QCOMPARE(m_api->host.uploads.size(), withPhoto ? 1 : 0);
    const QString fileName = withPhoto ? m_api->host.uploads.first().second : QString();
    QVERIFY(!withPhoto
            || QRegularExpression(QStringLiteral(R"(^9_\d+\.\d+_photo_\d\.jpg$)")).match(fileName).hasMatch());
    const auto received = m_api->server.requests(QStringLiteral("/api/comment"));
    QCOMPARE(received.size(), 1);
    const QJsonObject body = QJsonDocument::fromJson(received.first().body).object();
    QCOMPARE(body.value("media_path"),
             withPhoto ? QJsonValue(QStringLiteral("uploads/") + fileName) : QJsonValue(QJsonValue::Null));
    QCOMPARE(body.value("text").toString(), QStringLiteral(" "));
    QCOMPARE(body.value("is_incident").toBool(), true);
    QCOMPARE(body.value("task_id").toInteger(), 4);
    QCOMPARE(body.value("user_id").toInteger(), 9);
    QCOMPARE(body.value("date_created").toInteger(), 1795169730123);
}

void TestNetworkManager::downloadImage()
{
    m_api->server.on("GET", "/files/thumbnails/thumb_p/a.png", CannedResponse{200, test::jpeg(), "image/jpeg"});
    m_api->server.on("GET", "/files/p/bad.png", CannedResponse{200, "not a picture", "image/png"});
    test::LogCapture log;

    std::optional<Result<QImage, DownloadError>> result;
    auto fetch = [&](const QString &path, bool thumb) {
        result.reset();
        m_api->manager.downloadImage(path, thumb, this, [&](const auto &r) { result = r; });
        QTRY_VERIFY_WITH_TIMEOUT(result.has_value(), answerTimeoutMs);
    };
    fetch(QStringLiteral("p/a.png"), true);
    QVERIFY(result->isSuccess());
    QCOMPARE(result->value().size(), QSize(120, 90));
    QVERIFY(log.lines().contains(QStringLiteral("Route response:  200")));

    fetch(QStringLiteral("p/missing.png"), false);
    QCOMPARE(result->error().managerError(), ManagerErrors(ManagerErrors::Kind::apiRouteError));

    fetch(QStringLiteral("p/bad.png"), false);
    QCOMPARE(result->error().managerError(), ManagerErrors(ManagerErrors::Kind::invalidParsing));
}

void TestNetworkManager::photoFileName_data()
{
    QTest::addColumn<double>("millis");
    QTest::addColumn<QString>("name");
    QTest::newRow("fraction") << 1700000000123.456 << "5_1700000000123.456_photo_3.jpg";
    QTest::newRow("whole milliseconds keep .0") << 1700000000123.0 << "5_1700000000123.0_photo_3.jpg";
}

void TestNetworkManager::photoFileName()
{
    QFETCH(double, millis);
    QTEST(NetworkManager::photoFileName(5, millis, 3), "name");
}

QTEST_GUILESS_MAIN(TestNetworkManager)
#include "tst_networkmanager.moc"
