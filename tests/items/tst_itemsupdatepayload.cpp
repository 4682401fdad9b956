#include "api/json.h"
#include "items/itemsupdatepayload.h"
#include "items/itemsupdateresponse.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace ravelin;

class TestItemsUpdatePayload : public QObject
{
    Q_OBJECT

private slots:
    void wireForm_data();
    void wireForm();
    void decodesTheUpdateAnswer();
};

void TestItemsUpdatePayload::wireForm_data()
{
    QTest::addColumn<QList<qint64>>("itemIds");
    QTest::addColumn<ItemStatus>("status");
    QTest::addColumn<QString>("note");
    QTest::addColumn<QString>("mediaPath"); // empty: no photo
    QTest::addColumn<QJsonArray>("expected"); // under "items"

    auto entry = [](qint64 id, int status, QJsonValue text, QJsonValue media) {
        return QJsonObject{{"id", id}, {"item_status_id", status}, {"text", text}, {"media_path", media}};
    };
    const QJsonValue null(QJsonValue::Null);
    const QString photo("files/7_1_photo_3.jpg");
    QTest::newRow("no note, no photo") << QList<qint64>{301} << ItemStatus::ok << QString() << QString()
                                       << QJsonArray{entry(301, 1, null, null)};
    QTest::newRow("empty note is null") << QList<qint64>{301} << ItemStatus::ok << QString("") << QString()
                                        << QJsonArray{entry(301, 1, null, null)};
    QTest::newRow("a blank note is not empty")
        << QList<qint64>{8} << ItemStatus::ok << QString(" ") << QString() << QJsonArray{entry(8, 1, " ", null)};
    QTest::newRow("incident with note and photo, every item the same")
        << QList<qint64>{5, 3, 9} << ItemStatus::nok << QString("Seal broken") << photo
        << QJsonArray{entry(5, 2, "Seal broken", photo), entry(3, 2, "Seal broken", photo),
                      entry(9, 2, "Seal broken", photo)};
    QTest::newRow("no items") << QList<qint64>{} << ItemStatus::ok << QString("x") << QString() << QJsonArray{};
}

void TestItemsUpdatePayload::wireForm()
{
    QFETCH(QList<qint64>, itemIds);
    QFETCH(ItemStatus, status);
    QFETCH(QString, note);
    QFETCH(QString, mediaPath);
    QFETCH(QJsonArray, expected);
    QList<ItemPtr> items;
    for (qint64 id : itemIds) {
        items.append(std::make_shared<Item>());
        items.last()->id = id;
    }
    const auto payload = ItemsUpdatePayload::make(41, 7, items, status, note,
                                                  mediaPath.isEmpty() ? std::nullopt : std::optional(mediaPath));
    const QJsonObject body{{"task_id", 41}, {"updater_user_id", 7}, {"items", expected}};
    QCOMPARE(payload.encode(), body);
    // The request body is the compact form, nulls written out.
    QCOMPARE(payload.toJson(), QJsonDocument(body).toJson(QJsonDocument::Compact));
}

void TestItemsUpdatePayload::decodesTheUpdateAnswer()
{
    const auto decode = [](const QByteArray &body) {
        return json::decode<ItemsUpdateResponse>(
            body, {json::KeyDecoding::convertFromSnakeCase, json::DateDecoding::serverFormat, nullptr});
    };
    // Only "success" is kept: the echoed data is not read, not even its dates.
    QVERIFY(decode(R"({"success":true,"data":{"task_id":41,"updater_user_id":7,"items":[{"id":301,
        "item_status_id":1,"updated":true,"date_updated":"not a date"}]}})")
                .success);
    QVERIFY(!decode(R"({"success":false})").success);
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)decode(R"({"data":{}})"));
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)decode(R"({"success":"true"})"));
}

QTEST_GUILESS_MAIN(TestItemsUpdatePayload)
#include "tst_itemsupdatepayload.moc"
