#include "api/networkmanager.h"
#include "api/settings.h"

#include <QTest>

using namespace ravelin;

class TestSettings : public QObject
{
    Q_OBJECT

private slots:
    void decodesSnakeCaseAndFieldNames_data();
    void decodesSnakeCaseAndFieldNames();
    void missingListFailsTheAnswer();
    void keepsCategoriesSortedBehindAll();
};

void TestSettings::decodesSnakeCaseAndFieldNames_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("snake case") << QByteArray(R"({"success":true,"data":{"item_status":[{"id":1,"name":"Completed"}],
        "task_status":[{"id":4,"name":"In Progress"}],"task_category":[{"id":3,"name":"Pumps"}]}})");
    QTest::newRow("field names") << QByteArray(R"({"success":true,"data":{"itemStatus":[{"id":1,"name":"Completed"}],
        "taskStatus":[{"id":4,"name":"In Progress"}],"taskCategory":[{"id":3,"name":"Pumps"}]}})");
}

void TestSettings::decodesSnakeCaseAndFieldNames()
{
    QFETCH(QByteArray, body);
    const auto response = json::decode<SettingsAndConstantsResponse>(body, NetworkManager::decodingOptions());
    QVERIFY(response.success);
    QCOMPARE(response.data.itemStatus, (QList<ItemStatusDefinition>{{1, "Completed"}}));
    QCOMPARE(response.data.taskStatus, (QList<TaskStatusDefinition>{{4, "In Progress"}}));
    QCOMPARE(response.data.taskCategory, (QList<TaskCategoryDefinition>{{3, "Pumps"}}));
}

void TestSettings::missingListFailsTheAnswer()
{
    const QByteArray body = R"({"success":true,"data":{"item_status":[],"task_status":[]}})";
    QVERIFY_THROWS_EXCEPTION(json::DecodingError,
                             (void)json::decode<SettingsAndConstantsResponse>(body, NetworkManager::decodingOptions()));
}

void TestSettings::keepsCategoriesSortedBehindAll()
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

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
