#include "comments/commentsvm.h"
#include "comments/elapsedtime.h"
#include "support/apiharness.h"
#include "support/fatalerrortrap.h"
#include "support/fixtures.h"
#include "support/logcapture.h"

#include <QTest>
#include <QTimeZone>

using namespace ravelin;
using namespace ravelin::test;

namespace {

QStringList texts(const QList<CommentPtr> &comments)
{
    return mapped(comments, [](const CommentPtr &c) { return c->text.value_or(QStringLiteral("<none>")); });
}

CommentPtr makeComment(QList<qint64> itemIds, bool incident, std::optional<QString> text = QStringLiteral("t"))
{
    auto c = std::make_shared<Comment>();
    c->itemIds = std::move(itemIds);
    c->isIncident = incident;
    c->text = std::move(text);
    c->assetName = QStringLiteral("Ann Rivers");
    c->assetIcon = QStringLiteral("list_pin_people_01");
    return c;
}

} // namespace

// Runs in New York time so that local days differ from UTC days.
class TestCommentsVM : public ViewModelTest<CommentsVM>
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { closeViewModel(); }
    void fetchGroupsByLocalDayUnlessItFails();
    void fetchIgnoresTheSuccessFlag();
    void details_data();
    void details();
    void cellViewModelShowsFirstPicture();
    void outOfRangeStops();
    void elapsedTime_data();
    void elapsedTime();

private:
    bool fetch()
    {
        return reported([this](auto done) { m_vm->fetchComments(done); }) == true;
    }
};

void TestCommentsVM::init()
{
    startHarness();
    for (auto [id, name] : {std::pair{9, "Valve"}, std::pair{5, "Seal"}}) {
        auto item = std::make_shared<Item>();
        item->id = id;
        item->name = QString::fromLatin1(name);
        m_task->itemList.items.append(item);
    }
    m_vm = std::make_unique<CommentsVM>(m_task, &m_api->manager, UsersData{});
}

void TestCommentsVM::fetchGroupsByLocalDayUnlessItFails()
{
    // 23:59 and 00:01 in New York on consecutive days: the same UTC day.
    const QJsonArray comments{commentJson("late", "2026-11-20T04:59:00.000Z"),
                              commentJson("next morning 2", "2026-11-20T14:00:00.000Z"),
                              commentJson("next morning 1", "2026-11-20T05:01:00.000Z"),
                              commentJson("week before", "2026-11-13T15:00:00.000Z")};
    m_api->server.on("GET", "/api/task/5/comments", CannedResponse{200, answer(comments)});
    LogCapture log;
    QVERIFY(fetch());
    QVERIFY(log.lines().contains(QStringLiteral("Fetched comments 4")));

    QCOMPARE(texts(m_vm->comments()), (QStringList{"next morning 2", "next morning 1", "late", "week before"}));
    QCOMPARE(m_vm->numberOfSections(), 3);
    const QTimeZone local = QTimeZone::systemTimeZone();
    QCOMPARE(m_vm->section(0).date, QDateTime(QDate(2026, 11, 13), QTime(0, 0), local));
    QCOMPARE(texts(m_vm->section(0).comments), QStringList{"week before"});
    QCOMPARE(m_vm->section(1).date, QDateTime(QDate(2026, 11, 19), QTime(0, 0), local));
    QCOMPARE(texts(m_vm->section(1).comments), QStringList{"late"});
    QCOMPARE(texts(m_vm->section(2).comments), (QStringList{"next morning 1", "next morning 2"}));
    QCOMPARE(m_vm->numberOfRows(2), 2);

    // A failed fetch keeps the earlier comments and their days.
    m_api->server.on("GET", "/api/task/5/comments", CannedResponse{500, {}});
    QVERIFY(!fetch());
    QCOMPARE(m_vm->comments().size(), 4);
    QCOMPARE(m_vm->numberOfSections(), 3);
    QCOMPARE(log.count(LogCapture::failedFetch(QStringLiteral("comments"))), 1);
}

void TestCommentsVM::fetchIgnoresTheSuccessFlag()
{
    m_api->server.on("GET", "/api/task/5/comments", CannedResponse{200, R"({"success":false,"data":[]})"});
    QVERIFY(fetch());
    QCOMPARE(m_vm->numberOfSections(), 0);
}

void TestCommentsVM::details_data()
{
    QTest::addColumn<CommentPtr>("comment");
    QTest::addColumn<bool>("hasDetails");
    QTest::addColumn<QString>("detailsText");
    QTest::addColumn<QString>("icon"); // of every fragment
    QTest::addColumn<QString>("colour");
    QTest::addColumn<bool>("isTaskComment");

    const auto row = [](const char *name, QList<qint64> items, bool incident, bool hasDetails, const char *text,
                        const char *icon, const char *colour, bool isTaskComment) {
        QTest::newRow(name) << makeComment(std::move(items), incident) << hasDetails << QString(text) << QString(icon)
                            << QString(colour) << isTaskComment;
    };
    row("task incident", {}, true, true, "Task Marked as Blocked", "nok", "CustomRed", true);
    row("plain task comment", {}, false, false, "", "", "", true);
    row("item comment in the comment's order", {5, 9}, false, true, "Seal\nValve\n", "ok", "CustomGreen", false);
    row("item incident", {9}, true, true, "Valve\n", "nok", "CustomRed", false);
    row("unknown item is skipped", {42, 5}, false, true, "Seal\n", "ok", "CustomGreen", false);
    row("only unknown items: empty details", {42}, false, true, "", "", "", false);
}

void TestCommentsVM::details()
{
    QFETCH(CommentPtr, comment);
    QFETCH(QString, detailsText);
    QFETCH(bool, isTaskComment);

    const CommentCellDetail detail = CommentCellDetail::make(*comment, *m_task);
    QTEST(detail.details.has_value(), "hasDetails");
    QCOMPARE(detail.detailsText(), detailsText);
    QCOMPARE(detail.isTaskComment, isTaskComment);
    QCOMPARE(detail.kind, QStringLiteral("Text"));
    QCOMPARE(detail.user, QStringLiteral("Ann Rivers"));
    for (const DetailFragment &f : detail.details.value_or(QList<DetailFragment>{})) {
        QTEST(f.iconName, "icon");
        QTEST(f.colorName, "colour");
        QCOMPARE(f.alpha, 0.8);
    }
    comment->text.reset();
    QCOMPARE(CommentCellDetail::make(*comment, *m_task).text, QString());
}

void TestCommentsVM::cellViewModelShowsFirstPicture()
{
    const QJsonObject withPictures
        = commentJson("pics", "2026-11-20T14:00:00.000Z", std::nullopt, false, {"a.jpg", "b.jpg"});
    m_api->server.on(
        "GET", "/api/task/5/comments",
        CannedResponse{200, answer(QJsonArray{withPictures, commentJson("plain", "2026-11-20T15:00:00.000Z")})});
    QVERIFY(fetch());
    QCOMPARE(m_vm->cellViewModel(0, 0)->path(), QStringLiteral("a.jpg"));
    QCOMPARE(m_vm->cellViewModel(0, 1)->path(), std::nullopt);
}

void TestCommentsVM::outOfRangeStops()
{
    FatalErrorTrap trap;
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)m_vm->cellViewModel(0, 0));
    QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, (void)m_vm->section(-1));
}

void TestCommentsVM::elapsedTime_data()
{
    QTest::addColumn<qint64>("seconds");
    QTest::addColumn<QString>("text");
    QTest::newRow("1 second") << qint64(1) << "1 second ago";
    QTest::newRow("61 seconds") << qint64(61) << "1 min ago";
    QTest::newRow("just under a day") << qint64(86399) << "23 hours ago";
    QTest::newRow("27 days") << qint64(27 * 86400) << "3 weeks ago";
    QTest::newRow("28 days is a month") << qint64(28 * 86400) << "1 month ago";
    // A clock behind the server's: the seconds count below zero, truncated toward zero.
    QTest::newRow("in the future") << qint64(-300) << "-299 seconds ago";
    QTest::newRow("under a second in the future") << qint64(-1) << "0 seconds ago";
}

void TestCommentsVM::elapsedTime()
{
    QFETCH(qint64, seconds);
    const QDateTime now = QDateTime::fromMSecsSinceEpoch(1795169730123, QTimeZone::utc());
    QTEST(elapsedTimeText(now.addSecs(-seconds).addMSecs(-400), now), "text");
}

int main(int argc, char **argv)
{
    qputenv("TZ", "America/New_York");
    QCoreApplication app(argc, argv);
    TestCommentsVM test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_commentsvm.moc"
