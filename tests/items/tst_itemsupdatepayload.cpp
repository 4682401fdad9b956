#include "api/json.h"
#include "items/itempayloadcodingkeys.h"
#include "items/itemsupdatepayload.h"
#include "items/itemsupdateresponse.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace ravelin;

namespace {

QList<ItemPtr> items(const QList<qint64> &ids)
{
    QList<ItemPtr> out;
    for (qint64 id : ids) {
        auto item = std::make_shared<Item>();
        item->id = id;
        out.append(item);
    }
    return out;
}

QJsonObject parsed(const QByteArray &bytes)
{
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError || !doc.isObject())
        return {};
    return doc.object();
}

} // namespace

class TestItemsUpdatePayload : public QObject
{
    Q_OBJECT

private slots:
    void wireForm_data();
    void wireForm();
    void bodyIsCompactAndWritesNulls();
    void codingKeys();
    void decodesTheUpdateAnswer_data();
    void decodesTheUpdateAnswer();
};

void TestItemsUpdatePayload::wireForm_data()
{
    QTest::addColumn<QList<qint64>>("itemIds");
    QTest::addColumn<ItemStatus>("status");
    QTest::addColumn<QString>("note");
    QTest::addColumn<QString>("mediaPath"); // empty: no photo
    QTest::addColumn<QJsonObject>("expected");

    auto body = [](QJsonArray entries) {
        return QJsonObject{{"task_id", 41}, {"updater_user_id", 7}, {"items", entries}};
    };
    auto entry = [](qint64 id, int status, QJsonValue text, QJsonValue media) {
        return QJsonObject{{"id", id}, {"item_status_id", status}, {"text", text}, {"media_path", media}};
    };
    const QJsonValue null(QJsonValue::Null);

    QTest::newRow("one completed item without note or photo")
        << QList<qint64>{301} << ItemStatus::ok << QString() << QString() << body({entry(301, 1, null, null)});
    QTest::newRow("empty note is null") << QList<qint64>{301} << ItemStatus::ok << QString("") << QString()
                                        << body({entry(301, 1, null, null)});
    QTest::newRow("incident with note and photo, every item the same")
        << QList<qint64>{5, 3, 9} << ItemStatus::nok << QString("Seal broken") << QString("files/7_1_photo_3.jpg")
        << body({entry(5, 2, "Seal broken", "files/7_1_photo_3.jpg"), entry(3, 2, "Seal broken", "files/7_1_photo_3.jpg"),
                 entry(9, 2, "Seal broken", "files/7_1_photo_3.jpg")});
    QTest::newRow("a blank note is not empty") << QList<qint64>{8} << ItemStatus::ok << QString(" ") << QString()
                                               << body({entry(8, 1, " ", null)});
    QTest::newRow("no items") << QList<qint64>{} << ItemStatus::ok << QString("x") << QString() << body({});
}

void TestItemsUpdatePayload::wireForm()
{
    QFETCH(QList<qint64>, itemIds);
    QFETCH(ItemStatus, status);
    QFETCH(QString, note);
    QFETCH(QString, mediaPath);
    QFETCH(QJsonObject, expected);
    const auto payload = ItemsUpdatePayload::make(41, 7, items(itemIds), status, note,
                                                  mediaPath.isEmpty() ? std::nullopt : std::optional(mediaPath));
    QCOMPARE(payload.encode(), expected);
    QCOMPARE(parsed(payload.toJson()), expected);
}

void TestItemsUpdatePayload::bodyIsCompactAndWritesNulls()
{
    const auto payload = ItemsUpdatePayload::make(41, 7, items({301}), ItemStatus::ok, QString(), std::nullopt);
    const QByteArray bytes = payload.toJson();
    QVERIFY(!bytes.contains(' '));
    QVERIFY(!bytes.contains('\n'));
    QVERIFY(bytes.contains(R"("text":null)"));
    QVERIFY(bytes.contains(R"("media_path":null)"));
}

void TestItemsUpdatePayload::codingKeys()
{
    QStringList texts;
    for (ItemPayloadCodingKeys key : ItemPayloadCodingKey::allCases())
        texts.append(ItemPayloadCodingKey::stringValue(key));
    QCOMPARE(texts, (QStringList{"task_id", "updater_user_id", "id", "item_status_id", "items", "text", "media_path"}));

    texts.clear();
    for (ItemsUpdateResponseCodingKeys key : ItemsUpdateResponseCodingKey::allCases())
        texts.append(ItemsUpdateResponseCodingKey::stringValue(key));
    QCOMPARE(texts, (QStringList{"success", "task_id", "data", "items", "updated", "item_status_id", "id",
                                 "updater_user_id", "date_updated"}));
}

void TestItemsUpdatePayload::decodesTheUpdateAnswer_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<bool>("success");
    QTest::newRow("echoed data is ignored")
        << QByteArray(R"({"success":true,"data":{"task_id":41,"updater_user_id":7,"items":[{"id":301,
            "item_status_id":1,"updated":true,"date_updated":"not a date"}]}})")
        << true << true;
    QTest::newRow("false") << QByteArray(R"({"success":false})") << true << false;
    QTest::newRow("no success") << QByteArray(R"({"data":{}})") << false << false;
    QTest::newRow("success as text") << QByteArray(R"({"success":"true"})") << false << false;
}

void TestItemsUpdatePayload::decodesTheUpdateAnswer()
{
    QFETCH(QByteArray, body);
    QFETCH(bool, valid);
    const json::Options options{json::KeyDecoding::convertFromSnakeCase, json::DateDecoding::serverFormat, nullptr};
    if (!valid) {
        QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)json::decode<ItemsUpdateResponse>(body, options));
        return;
    }
    QTEST(json::decode<ItemsUpdateResponse>(body, options).success, "success");
}

QTEST_GUILESS_MAIN(TestItemsUpdatePayload)
#include "tst_itemsupdatepayload.moc"
