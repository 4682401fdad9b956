#include "api/json.h"
#include "items/item.h"
#include "items/itemsresponse.h"
#include "support/fatalerrortrap.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace ravelin;
using ravelin::test::FatalErrorRaised;
using ravelin::test::FatalErrorTrap;

namespace {

// Decodes an items answer holding one full item, changed by the patch and without the removed keys.
ItemPtr decodeItem(const QJsonObject &patch = {}, const QStringList &removed = {})
{
    QJsonObject item{
        {"id", 301},
        {"taskId", 41},
        {"name", "Valve 3"},
        {"details", "Close and check the seal"},
        {"isAudit", "0"},
        {"dateCreated", "2026-02-20T10:15:30.123+0000"},
        {"dateUpdated", "2026-02-21T09:00:00.000+0100"},
        {"itemStatusId", 3},
        {"qrCode", "QR-301"},
    };
    for (auto it = patch.begin(); it != patch.end(); ++it)
        item.insert(it.key(), it.value());
    for (const QString &key : removed)
        item.remove(key);
    const QByteArray body = QJsonDocument(QJsonObject{{"success", true}, {"data", QJsonArray{item}}}).toJson();
    const json::Options options{json::KeyDecoding::convertFromSnakeCase, json::DateDecoding::serverFormat, nullptr};
    const auto response = json::decode<ItemsResponse>(body, options);
    if (response.data.size() != 1)
        throw std::runtime_error("expected one item");
    return response.data.first();
}

} // namespace

class TestItem : public QObject
{
    Q_OBJECT

private slots:
    void decodesEveryField();
    void statuses();
    void outOfRangeStopsTheProcess();
    void auditFlagFromText_data();
    void auditFlagFromText();
    void optionalValues_data();
    void optionalValues();
    void decodingErrors_data();
    void decodingErrors();
    void encodesTheLocalForm();
};

void TestItem::decodesEveryField()
{
    const ItemPtr item = decodeItem();
    QCOMPARE(item->id, 301);
    QCOMPARE(item->taskId, 41);
    QCOMPARE(item->name, "Valve 3");
    QCOMPARE(item->details, "Close and check the seal");
    QVERIFY(!item->isAudit);
    QCOMPARE(item->dateCreated, QDateTime(QDate(2026, 2, 20), QTime(10, 15, 30, 123), Qt::UTC));
    QCOMPARE(item->dateUpdated, std::optional(QDateTime(QDate(2026, 2, 21), QTime(8, 0), Qt::UTC)));
    QCOMPARE(item->status, ItemStatus::open);
    QCOMPARE(item->qrCode, std::optional<QString>("QR-301"));
    QVERIFY(!item->isQRMapped);
}

// Ids, segments and texts round-trip; which server id is which status is checked
// where items are filtered (tst_itemsvm).
void TestItem::statuses()
{
    QCOMPARE(ItemStatuses::allCases().size(), 4);
    for (const ItemStatus status : ItemStatuses::allCases()) {
        QCOMPARE(decodeItem(QJsonObject{{"itemStatusId", ItemStatuses::serverId(status)}})->status, status);
        QCOMPARE(ItemStatuses::fromSegmentIndex(ItemStatuses::segmentIndex(status)), status);
        const QString text = ItemStatuses::rawValue(status);
        QCOMPARE(ItemStatuses::fromRawValue(text), std::optional(status));
        // Texts match exactly.
        QVERIFY(!ItemStatuses::fromRawValue(text.toLower()));
        QVERIFY(!ItemStatuses::fromRawValue(text.chopped(1)));
    }
}

void TestItem::outOfRangeStopsTheProcess()
{
    FatalErrorTrap trap;
    for (int serverId : {0, 5})
        QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)decodeItem(QJsonObject{{"itemStatusId", serverId}}));
    // -1: no segment selected.
    for (qint64 segment : {-1, 4})
        QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)ItemStatuses::fromSegmentIndex(segment));
}

void TestItem::auditFlagFromText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("expected");
    QTest::newRow("0") << "0" << false;
    QTest::newRow("00") << "00" << true;
    QTest::newRow("empty") << "" << true;
    QTest::newRow("0 with space") << " 0" << true;
}

void TestItem::auditFlagFromText()
{
    QFETCH(QString, text);
    QTEST(decodeItem(QJsonObject{{"isAudit", text}})->isAudit, "expected");
}

void TestItem::optionalValues_data()
{
    QTest::addColumn<QJsonObject>("patch");
    QTest::addColumn<QStringList>("removed");
    QTest::addColumn<bool>("hasQrCode");
    QTest::addColumn<bool>("hasUpdateDate");
    QTest::newRow("absent") << QJsonObject{} << QStringList{"qrCode", "dateUpdated"} << false << false;
    QTest::newRow("null") << QJsonObject{{"qrCode", QJsonValue::Null}, {"dateUpdated", QJsonValue::Null}}
                          << QStringList{} << false << false;
    QTest::newRow("empty code is a code") << QJsonObject{{"qrCode", ""}} << QStringList{} << true << true;
}

void TestItem::optionalValues()
{
    QFETCH(QJsonObject, patch);
    QFETCH(QStringList, removed);
    const ItemPtr item = decodeItem(patch, removed);
    QTEST(item->qrCode.has_value(), "hasQrCode");
    QTEST(item->dateUpdated.has_value(), "hasUpdateDate");
}

void TestItem::decodingErrors_data()
{
    QTest::addColumn<QJsonObject>("patch");
    QTest::addColumn<QStringList>("removed");
    for (const char *key : {"id", "taskId", "name", "details", "isAudit", "dateCreated", "itemStatusId"})
        QTest::addRow("%s missing", key) << QJsonObject{} << QStringList{key};
    QTest::newRow("isAudit as boolean") << QJsonObject{{"isAudit", false}} << QStringList{};
    QTest::newRow("qrCode as number") << QJsonObject{{"qrCode", 301}} << QStringList{};
    QTest::newRow("dateUpdated not a date") << QJsonObject{{"dateUpdated", "yesterday"}} << QStringList{};
}

void TestItem::decodingErrors()
{
    QFETCH(QJsonObject, patch);
    QFETCH(QStringList, removed);
    QVERIFY_THROWS_EXCEPTION(json::DecodingError, (void)decodeItem(patch, removed));
}

void TestItem::encodesTheLocalForm()
{
    ItemPtr item = decodeItem(QJsonObject{{"isAudit", "1"}, {"itemStatusId", 2}});
    item->isQRMapped = true;
    const QJsonObject o = item->encode();
    QCOMPARE(o["status"].toString(), "Incidents");
    QCOMPARE(o["isAudit"], QJsonValue(true));
    QCOMPARE(o["isQRMapped"], QJsonValue(true));
    QCOMPARE(o["qrCode"].toString(), "QR-301");

    // Absent values are left out.
    const QJsonObject bare = decodeItem({}, {"qrCode", "dateUpdated"})->encode();
    QVERIFY(!bare.contains("qrCode"));
    QVERIFY(!bare.contains("dateUpdated"));
    QCOMPARE(bare["isAudit"], QJsonValue(false));
    QCOMPARE(bare["status"].toString(), "Open");
}

QTEST_GUILESS_MAIN(TestItem)
#include "tst_item.moc"
