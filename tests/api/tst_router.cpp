#include "api/router.h"
#include "api/sessionstore.h"
#include "support/fatalerrortrap.h"
#include "support/logcapture.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>
#include <QUrlQuery>

using namespace ravelin;

namespace {

TasksQueryParams allTasksQuery()
{
    return TasksQueryParams{1000, 2000, TaskPriority::all, {0, "All"}, SortKey::date, SortOrder::descending};
}

} // namespace

Q_DECLARE_METATYPE(ravelin::TasksQueryParams)

class TestRouter : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void queryItems_data();
    void queryItems();
    void updateTaskStatusBody();
    void pathPrefixOfBaseUrl();
    void noSessionStops();

private:
    QTemporaryDir m_dir;
    std::unique_ptr<QSettings> m_settings;
    std::unique_ptr<SessionStore> m_store;
};

void TestRouter::init()
{
    m_settings = std::make_unique<QSettings>(m_dir.filePath(QStringLiteral("router.ini")), QSettings::IniFormat);
    m_settings->clear();
    m_store = std::make_unique<SessionStore>(m_settings.get());
    m_store->store(APIData{QStringLiteral("api.example.test"), QStringLiteral("tok-1"),
                           QDateTime::fromMSecsSinceEpoch(1700000000000, QTimeZone::utc())});
}

void TestRouter::queryItems_data()
{
    QTest::addColumn<TasksQueryParams>("params");
    QTest::addColumn<QStringList>("expected"); // name=value in order

    QTest::newRow("all priorities, category All: four items")
        << allTasksQuery() << QStringList{"dateStart=1000", "dateEnd=2000", "orderBy=date_created", "sortBy=DESC"};
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

void TestRouter::queryItems()
{
    QFETCH(TasksQueryParams, params);
    QFETCH(QStringList, expected);
    const UrlRequest request = Router::getAllTasks(3, params).urlRequest(*m_store);
    QStringList items;
    for (const auto &[name, value] : QUrlQuery(request.url()).queryItems())
        items.append(name + QLatin1Char('=') + value);
    QCOMPARE(items, expected);
}

void TestRouter::updateTaskStatusBody()
{
    const UrlRequest request = Router::updateTaskStatus(7, 3, 11).urlRequest(*m_store);
    QCOMPARE(request.request.transferTimeout(), 60000);
    const QJsonObject body = QJsonDocument::fromJson(request.body).object();
    QCOMPARE(body, (QJsonObject{{"task_status_id", 3}, {"updater_user_id", 11}, {"assigned_user_id", 11}}));
}

void TestRouter::pathPrefixOfBaseUrl()
{
    m_store->store(
        APIData{QStringLiteral("host.test:8443/tenant/v1"), QStringLiteral("t"), QDateTime::currentDateTimeUtc()});
    QCOMPARE(Router::getItems(3).urlRequest(*m_store).url().toString(),
             QStringLiteral("https://host.test:8443/tenant/v1/api/items/taskId/3"));
}

void TestRouter::noSessionStops()
{
    m_settings->clear();
    test::FatalErrorTrap trap;
    test::LogCapture log;
    QVERIFY_THROWS_EXCEPTION(test::FatalErrorRaised, (void)Router::getToken().urlRequest(*m_store));
}

QTEST_GUILESS_MAIN(TestRouter)
#include "tst_router.moc"
