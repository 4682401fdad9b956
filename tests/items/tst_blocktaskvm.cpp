#include "items/blocktaskvm.h"
#include "support/apiharness.h"
#include "support/fixtures.h"

#include <QTest>

using namespace ravelin;
using namespace ravelin::test;

namespace {

constexpr int timeoutMs = 10000;

ItemPtr makeItem(qint64 id, const QString &name)
{
    auto item = std::make_shared<Item>();
    item->id = id;
    item->name = name;
    item->details = name + QStringLiteral(" details");
    return item;
}

} // namespace

class TestBlockTaskVM : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void itemAndDetailsLines_data();
    void itemAndDetailsLines();
    void block_data();
    void block();
    void failedCommentIsNotABlock();

private:
    std::unique_ptr<ApiHarness> m_api;
    TaskPtr m_task;
    UsersData m_users;
};

void TestBlockTaskVM::init()
{
    m_api = std::make_unique<ApiHarness>();
    m_task = std::make_shared<Task>();
    m_task->id = 5;
    m_users.currentUser.id = 7;
    m_api->server.on("POST", "/api/comment", CannedResponse{200, R"({"success":true})"});
}

void TestBlockTaskVM::cleanup()
{
    m_api.reset();
}

void TestBlockTaskVM::itemAndDetailsLines_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("itemLine");
    QTest::addColumn<QString>("detailsLine");
    QTest::newRow("no items") << QStringList{} << ""
                              << "";
    QTest::newRow("one item") << QStringList{"Seal"} << "Seal"
                              << "Seal details";
    QTest::newRow("three items") << QStringList{"Seal", "Gauge", "Valve"} << ""
                                 << "Seal\nGauge\nValve";
}

void TestBlockTaskVM::itemAndDetailsLines()
{
    QFETCH(QStringList, names);
    QFETCH(QString, itemLine);
    QFETCH(QString, detailsLine);
    for (int i = 0; i < names.size(); ++i)
        m_task->itemList.items.append(makeItem(i + 1, names.at(i)));
    const BlockTaskVM vm(m_task, &m_api->manager, QStringLiteral("Provide a reason for blocking the task"), m_users);
    QCOMPARE(vm.itemLine(), itemLine);
    QCOMPARE(vm.detailsLine(), detailsLine);
}

void TestBlockTaskVM::block_data()
{
    QTest::addColumn<QString>("reason"); // "<none>" for absent
    QTest::addColumn<bool>("withPicture");
    QTest::addColumn<BlockTaskVM::Outcome>("outcome");
    QTest::addColumn<QString>("sentText"); // text of the posted comment
    using O = BlockTaskVM::Outcome;
    QTest::newRow("nothing at all") << "<none>" << false << O::blockedWithoutComment << "";
    QTest::newRow("empty reason") << "" << false << O::blockedWithoutComment << "";
    QTest::newRow("one blank") << " " << false << O::blockedWithoutComment << "";
    QTest::newRow("two blanks are a reason") << "  " << false << O::blocked << "  ";
    QTest::newRow("a reason") << "Gate locked" << false << O::blocked << "Gate locked";
    QTest::newRow("picture without reason") << "<none>" << true << O::blocked << " ";
    QTest::newRow("picture and reason") << "Flooded" << true << O::blocked << "Flooded";
}

void TestBlockTaskVM::block()
{
    QFETCH(QString, reason);
    QFETCH(bool, withPicture);
    QFETCH(BlockTaskVM::Outcome, outcome);
    QFETCH(QString, sentText);

    BlockTaskVM vm(m_task, &m_api->manager, QString(), m_users);
    std::optional<QImage> picture;
    if (withPicture) {
        picture = QImage(4, 4, QImage::Format_RGB32);
        picture->fill(Qt::gray);
    }
    std::optional<BlockTaskVM::Outcome> result;
    vm.block(reason == QLatin1String("<none>") ? std::nullopt : std::optional(reason), picture,
             [&](BlockTaskVM::Outcome o) { result = o; });
    QTRY_VERIFY_WITH_TIMEOUT(result.has_value(), timeoutMs);
    QCOMPARE(*result, outcome);

    const auto posted = m_api->server.requests(QStringLiteral("/api/comment"));
    if (outcome == BlockTaskVM::Outcome::blockedWithoutComment) {
        QCOMPARE(posted.size(), 0);
        return;
    }
    QCOMPARE(posted.size(), 1);
    const QJsonObject body = QJsonDocument::fromJson(posted.first().body).object();
    QCOMPARE(body.value("text").toString(), sentText);
    QCOMPARE(body.value("is_incident").toBool(), true);
    QCOMPARE(body.value("task_id").toInteger(), 5);
    QCOMPARE(body.value("user_id").toInteger(), 7);
    QCOMPARE(body.value("media_path").isNull(), !withPicture);
}

void TestBlockTaskVM::failedCommentIsNotABlock()
{
    m_api->server.on("POST", "/api/comment", CannedResponse{500, {}});
    BlockTaskVM vm(m_task, &m_api->manager, QString(), m_users);
    std::optional<BlockTaskVM::Outcome> result;
    vm.block(QStringLiteral("Gate locked"), std::nullopt, [&](BlockTaskVM::Outcome o) { result = o; });
    QTRY_VERIFY_WITH_TIMEOUT(result.has_value(), timeoutMs);
    QCOMPARE(*result, BlockTaskVM::Outcome::failed);
}

QTEST_GUILESS_MAIN(TestBlockTaskVM)
#include "tst_blocktaskvm.moc"
