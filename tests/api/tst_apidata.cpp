#include "api/apidata.h"
#include "api/networkmanager.h"
#include "api/router.h"
#include "api/sessionstore.h"
#include "api/settings.h"
#include "api/usersdata.h"
#include "support/fatalerrortrap.h"
#include "support/logcapture.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>
#include <QUrlQuery>

using namespace ravelin;
using namespace std::chrono;

using Assets = QMap<qint64, QStringList>;

Q_DECLARE_METATYPE(ravelin::TasksQueryParams)

class TestApiData : public QObject
{
    Q_OBJECT

private slots:
    void tokenFreshness_data();
    void tokenFreshness();
    void storedUnderItsKeysAndReadBackIdentically();
    void sessionStoreMissingOrUnreadable_data();
    void sessionStoreMissingOrUnreadable();

    void build_data();
    void build();
    void shortAssetValueStops_data();
    void shortAssetValueStops();
    void decodesSnakeCaseAndFieldNames_data();
    void decodesSnakeCaseAndFieldNames();
    void missingListFailsTheAnswer();
    void keepsCategoriesSortedBehindAll();

    void init();
    void queryItems_data();
    void queryItems();
    void updateTaskStatusBody();
    void pathPrefixOfBaseUrl();
    void noSessionStops();

private:
    QTemporaryDir m_dir;
    // A session for the router's tests, stored afresh before every test.
    std::unique_ptr<QSettings> m_settings;
    std::unique_ptr<SessionStore> m_store;
};

void TestApiData::tokenFreshness_data()
{
    QTest::addColumn<qint64>("ageMs");
    QTest::addColumn<bool>("fresh");
    QTest::newRow("same instant") << qint64(0) << false;
    QTest::newRow("0.4 s truncates to 0") << qint64(400) << false;
    QTest::newRow("1 s") << qint64(1000) << true;
    QTest::newRow("14399.9 s") << qint64(14399900) << true;
    QTest::newRow("14400 s") << qint64(14400000) << false;
    QTest::newRow("stamped in the future") << qint64(-5000) << true;
    QTest::newRow("0.4 s in the future") << qint64(-400) << false;
}

void TestApiData::tokenFreshness()
{
    QFETCH(qint64, ageMs);
    const TimePoint now = TimePoint(milliseconds(1795169730123));
    APIData data{QStringLiteral("h"), QStringLiteral("t"), toDateTime(now - milliseconds(ageMs))};
    QTEST(data.isTokenFresh(now), "fresh");
}

void TestApiData::storedUnderItsKeysAndReadBackIdentically()
{
    const APIData data{QStringLiteral("api.example.org/v2"), QStringLiteral("tok"),
                       QDateTime::fromMSecsSinceEpoch(1795169730123, QTimeZone::utc())};
    const QByteArray bytes = data.encode();
    QVERIFY(bytes.contains("\"baseURL\":\"api.example.org/v2\""));
    QVERIFY(bytes.contains("\"tokenString\":\"tok\""));
    // Seconds since 2001-01-01: 1795169730.123 - 978307200
    QVERIFY(bytes.contains("\"timestamp\":816862530.123"));
    QCOMPARE(APIData::fromStoredBytes(bytes), data);

    // Another store over the same file sees the synchronised bytes.
    QSettings settings(m_dir.filePath(QStringLiteral("roundtrip.ini")), QSettings::IniFormat);
    SessionStore(&settings).store(data);
    QSettings other(m_dir.filePath(QStringLiteral("roundtrip.ini")), QSettings::IniFormat);
    QCOMPARE(SessionStore(&other).load(), data);
    QCOMPARE(other.value(QStringLiteral("quorApiData")).toByteArray(), bytes);
}

void TestApiData::sessionStoreMissingOrUnreadable_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QString>("logLine");
    QTest::newRow("missing") << QVariant() << "Couldnt find key";
    QTest::newRow("not JSON") << QVariant(QByteArray("garbage")) << "Couldnt decode object";
    QTest::newRow("key missing in object")
        << QVariant(QByteArray(R"({"baseURL":"h","timestamp":1})")) << "Couldnt decode object";
}

void TestApiData::sessionStoreMissingOrUnreadable()
{
    QFETCH(QVariant, stored);
    QFETCH(QString, logLine);
    QSettings settings(m_dir.filePath(QString::fromLatin1(QTest::currentDataTag()) + QStringLiteral(".ini")),
                       QSettings::IniFormat);
    if (stored.isValid())
        settings.setValue(QStringLiteral("quorApiData"), stored);
    test::LogCapture log;
    QCOMPARE(SessionStore(&settings).load(), std::nullopt);
    QCOMPARE(log.lines(), QStringList{logLine});
    QCOMPARE(log.categories(), QStringList{"ravelin.api"});
}

void TestApiData::build_data()
{
    QTest::addColumn<qint64>("currentUserId");
    QTest::addColumn<Assets>("assets");
    QTest::addColumn<QString>("currentName");
    QTest::addColumn<QString>("currentIcon"); // empty: no icon
    QTest::addColumn<QList<qint64>>("userIds");

    QTest::newRow("listed current user") << qint64(7) << Assets{{7, {"Ann", "ann.png"}}} << QStringLiteral("Ann")
                                         << "ann.png" << QList<qint64>{7};
    QTest::newRow("current user not listed")
        << qint64(9) << Assets{{7, {"Ann", "ann.png"}}, {3, {"Bo", "bo.png", "extra"}}} << QStringLiteral("Unknown")
        << "" << QList<qint64>{3, 7};
    QTest::newRow("no assets") << qint64(9) << Assets{} << QStringLiteral("Unknown") << "" << QList<qint64>{};
}

void TestApiData::build()
{
    QFETCH(qint64, currentUserId);
    QFETCH(Assets, assets);
    QFETCH(QString, currentIcon);

    QRandomGenerator random(42);
    const UsersData data = UsersData::build(currentUserId, assets, random);
    QCOMPARE(data.currentUser.id, currentUserId);
    QTEST(data.currentUser.name, "currentName");
    QCOMPARE(data.currentUser.icon.value_or(QString()), currentIcon);
    QCOMPARE(data.currentUser.icon.has_value(), !currentIcon.isEmpty());
    QList<qint64> ids;
    for (const User &u : data.users) {
        ids.append(u.id);
        QCOMPARE(u.name, assets.value(u.id).at(0));
        QCOMPARE(u.icon, assets.value(u.id).at(1));
    }
    QTEST(ids, "userIds");
}

void TestApiData::shortAssetValueStops_data()
{
    QTest::addColumn<qint64>("currentUserId");
    QTest::newRow("current user's entry") << qint64(7);
    QTest::newRow("another user's entry") << qint64(1);
}

void TestApiData::shortAssetValueStops()
{
    QFETCH(qint64, currentUserId);
    test::FatalErrorTrap trap;
    QRandomGenerator random(1);
    QVERIFY_THROWS_EXCEPTION(test::FatalErrorRaised,
                             (void)UsersData::build(currentUserId, Assets{{7, {"Ann"}}}, random));
}

void TestApiData::decodesSnakeCaseAndFieldNames_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("snake case") << QByteArray(R"({"success":true,"data":{"item_status":[{"id":1,"name":"Completed"}],
        "task_status":[{"id":4,"name":"In Progress"}],"task_category":[{"id":3,"name":"Pumps"}]}})");
    QTest::newRow("field names") << QByteArray(R"({"success":true,"data":{"itemStatus":[{"id":1,"name":"Completed"}],
        "taskStatus":[{"id":4,"name":"In Progress"}],"taskCategory":[{"id":3,"name":"Pumps"}]}})");
}

void TestApiData::decodesSnakeCaseAndFieldNames()
{
    QFETCH(QByteArray, body);
    const auto response = json::decode<SettingsAndConstantsResponse>(body, NetworkManager::decodingOptions());
    QVERIFY(response.success);
    QCOMPARE(response.data.itemStatus, (QList<ItemStatusDefinition>{{1, "Completed"}}));
    QCOMPARE(response.data.taskStatus, (QList<TaskStatusDefinition>{{4, "In Progress"}}));
    QCOMPARE(response.data.taskCategory, (QList<TaskCategoryDefinition>{{3, "Pumps"}}));
}

void TestApiData::missingListFailsTheAnswer()
{
    const QByteArray body = R"({"success":true,"data":{"item_status":[],"task_status":[]}})";
    QVERIFY_THROWS_EXCEPTION(json::DecodingError,
                             (void)json::decode<SettingsAndConstantsResponse>(body, NetworkManager::decodingOptions()));
}

void TestApiData::keepsCategoriesSortedBehindAll()
{
    Settings received;
    received.taskStatus = {{1, "Unassigned"}, {2, "Assigned"}};
    received.taskCategory = {{5, "Pumps"}, {2, "Meters"}, {9, "Valves"}, {2, "Meters (old)"}};
    const Settings kept = Settings::fromReceived(received);
    QCOMPARE(kept.taskStatus, received.taskStatus);
    const QList<TaskCategoryDefinition> expected{
        {0, "All"}, {2, "Meters"}, {2, "Meters (old)"}, {5, "Pumps"}, {9, "Valves"}};
    QCOMPARE(kept.taskCategory, expected);
    QCOMPARE(Settings::defaults().taskCategory, (QList<TaskCategoryDefinition>{{0, "All"}}));
    QVERIFY(Settings::defaults().itemStatus.isEmpty());
}

void TestApiData::init()
{
    m_settings = std::make_unique<QSettings>(m_dir.filePath(QStringLiteral("router.ini")), QSettings::IniFormat);
    m_settings->clear();
    m_store = std::make_unique<SessionStore>(m_settings.get());
    m_store->store(APIData{QStringLiteral("api.example.test"), QStringLiteral("tok-1"),
                           QDateTime::fromMSecsSinceEpoch(1700000000000, QTimeZone::utc())});
}

void TestApiData::queryItems_data()
{
    QTest::addColumn<TasksQueryParams>("params");
    QTest::addColumn<QStringList>("expected"); // name=value in order

    QTest::newRow("all priorities, category All: four items")
        << TasksQueryParams{1000, 2000, TaskPriority::all, {0, "All"}, SortKey::date, SortOrder::descending}
        << QStringList{"dateStart=1000", "dateEnd=2000", "orderBy=date_created", "sortBy=DESC"};
    QTest::newRow("highest priority, one category, name ascending")
        << TasksQueryParams{5, 6, TaskPriority::highest, {3, "Pumps"}, SortKey::name, SortOrder::ascending}
        << QStringList{"dateStart=5", "dateEnd=6", "priority=0", "task_category_id=3", "orderBy=name", "sortBy=ASC"};
    QTest::newRow("low priority, sort by priority descending")
        << TasksQueryParams{-5, 6, TaskPriority::low, {0, "All"}, SortKey::priority, SortOrder::descending}
        << QStringList{"dateStart=-5", "dateEnd=6", "priority=3", "orderBy=priority", "sortBy=DESC"};
    QTest::newRow("a category named All is left out whatever its id")
        << TasksQueryParams{1, 2, TaskPriority::medium, {8, "All"}, SortKey::date, SortOrder::ascending}
        << QStringList{"dateStart=1", "dateEnd=2", "priority=2", "orderBy=date_created", "sortBy=ASC"};
}

void TestApiData::queryItems()
{
    QFETCH(TasksQueryParams, params);
    const UrlRequest request = Router::getAllTasks(3, params).urlRequest(*m_store);
    QTEST(QUrlQuery(request.url()).toString().split(QLatin1Char('&')), "expected");
}

void TestApiData::updateTaskStatusBody()
{
    const UrlRequest request = Router::updateTaskStatus(7, 3, 11).urlRequest(*m_store);
    QCOMPARE(request.request.transferTimeout(), 60000);
    const QJsonObject body = QJsonDocument::fromJson(request.body).object();
    QCOMPARE(body, (QJsonObject{{"task_status_id", 3}, {"updater_user_id", 11}, {"assigned_user_id", 11}}));
}

void TestApiData::pathPrefixOfBaseUrl()
{
    m_store->store(
        APIData{QStringLiteral("host.test:8443/tenant/v1"), QStringLiteral("t"), QDateTime::currentDateTimeUtc()});
    QCOMPARE(Router::getItems(3).urlRequest(*m_store).url().toString(),
             QStringLiteral("https://host.test:8443/tenant/v1/api/items/taskId/3"));
}

void TestApiData::noSessionStops()
{
    m_settings->clear();
    test::FatalErrorTrap trap;
    test::LogCapture log;
    QVERIFY_THROWS_EXCEPTION(test::FatalErrorRaised, (void)Router::getToken().urlRequest(*m_store));
}

QTEST_GUILESS_MAIN(TestApiData)
#include "tst_apidata.moc"
