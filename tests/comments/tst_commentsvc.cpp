#include "comments/custominputbar.h"
#include "comments/imagevc.h"
#include "support/screentest.h"

#include <QPlainTextEdit>

using namespace ravelin;
using namespace ravelin::test;

class TestCommentsVC : public ScreenTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { closeHost(); }

    void emptyOnlyOnceTheFetchIsOver();
    void sendRules_data();
    void sendRules();
    void onePictureLoadedOnceAndOpened();
    void characterLimit_data();
    void characterLimit();
    void sendButtonAfterReset();
    void layoutPassesShareOneFetch();
    void loadFailureAlert();

private:
    // The comments screen of task 8, pushed over the dashboard; waits for its first answer.
    CommentsVC *openComments(bool waitForAnswer = true);
};

void TestCommentsVC::init()
{
    startHarness();
    m_api->server.on("GET", tasksPath, CannedResponse{200, answer(QJsonArray{})});
    m_api->server.on("POST", "/api/comment", CannedResponse{200, R"({"success":true})"});
    m_api->server.on("GET", commentsPath, CannedResponse{200, answer(QJsonArray{})});
}

CommentsVC *TestCommentsVC::openComments(bool waitForAnswer)
{
    openHost();
    auto task = std::make_shared<Task>();
    task->id = taskId;
    auto *screen = new CommentsVC;
    screen->setViewModel(new CommentsVM(task, m_host->networkManager(), m_api->users));
    screen->setTaskID(taskId);
    screen->setTitle(QStringLiteral("Comments"));
    m_host->push(screen);
    if (waitForAnswer
        && !QTest::qWaitFor(
            [screen] { return !screen->isFetching() && screen->refreshControl()->indicatorBand() == 0; }, timeoutMs))
        return nullptr;
    return screen;
}

void TestCommentsVC::emptyOnlyOnceTheFetchIsOver()
{
    auto release = std::make_shared<std::atomic<bool>>(false);
    m_api->server.on("GET", commentsPath, heldAnswer(release, CannedResponse{200, answer(QJsonArray{})}));
    CommentsVC *screen = openComments(false);
    QTRY_VERIFY_WITH_TIMEOUT(m_api->server.requestCount(commentsPath) >= 1, timeoutMs);
    QVERIFY(screen->emptyMessageLabel()->isHidden());
    release->store(true);
    QTRY_VERIFY_WITH_TIMEOUT(!screen->isFetching(), timeoutMs);
    QVERIFY(screen->emptyMessageLabel()->isVisible());
    QCOMPARE(screen->emptyMessageLabel()->text(), QStringLiteral("No comments"));
}

void TestCommentsVC::sendRules_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("picture");
    QTest::addColumn<bool>("posts");
    QTest::addColumn<QString>("sentText");
    QTest::newRow("nothing") << "" << false << false << "";
    QTest::newRow("one blank") << " " << false << false << "";
    QTest::newRow("two blanks") << "  " << false << true << "  ";
    QTest::newRow("a picture and no text") << "" << true << true << " ";
}

void TestCommentsVC::sendRules()
{
    QFETCH(QString, text);
    QFETCH(bool, picture);
    QFETCH(bool, posts);
    CommentsVC *screen = openComments();
    QVERIFY(screen);
    CustomInputBar *bar = screen->inputBar();
    QTest::keyClicks(bar->inputTextView(), text);
    if (picture) {
        QTest::mouseClick(bar->attachmentButton(), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(bar->attachments().size(), 1, timeoutMs);
    }
    const int fetches = m_api->server.requestCount(commentsPath);
    // The send action itself (with nothing at all, the button is not even enabled).
    bar->didPressSend();
    // Posted or not, the thread is fetched again and the bar starts over.
    QTRY_VERIFY_WITH_TIMEOUT(m_api->server.requestCount(commentsPath) > fetches, timeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(bar->inputTextView()->toPlainText().isEmpty() && bar->attachments().isEmpty(), timeoutMs);
    const auto posted = m_api->server.requests(QStringLiteral("/api/comment"));
    QCOMPARE(posted.size(), posts ? 1 : 0);
    if (!posts)
        return;
    const QJsonObject body = QJsonDocument::fromJson(posted.first().body).object();
    QTEST(body.value("text").toString(), "sentText");
    QCOMPARE(body.value("is_incident").toBool(), false);
    QCOMPARE(body.value("media_path").isString(), picture);
    QCOMPARE(m_api->host.uploads.size(), picture ? 1 : 0);
}

void TestCommentsVC::onePictureLoadedOnceAndOpened()
{
    auto release = std::make_shared<std::atomic<bool>>(false);
    m_api->server.onPrefix("GET", QStringLiteral("/files/thumbnails/"),
                           heldAnswer(release, CannedResponse{200, jpeg(Qt::darkGreen), "image/jpeg"}));
    const QJsonObject comment = commentJson("Gauge", serverDate(m_api->now - std::chrono::minutes(2)), std::nullopt,
                                            false, {"p/one.jpg", "p/two.jpg", "p/three.jpg"});
    m_api->server.on("GET", commentsPath, CannedResponse{200, answer(QJsonArray{comment})});
    CommentsVC *screen = openComments();
    QVERIFY(screen);
    CommentThreadView *table = screen->tableView();
    const int row = screen->threadModel()->lastCommentRow();
    QTRY_VERIFY_WITH_TIMEOUT(!table->pictureRect(row).isEmpty(), timeoutMs);
    // Tapped before it has arrived: the short alert, nothing opens.
    AlertLog alerts;
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->pictureRect(row).center());
    QCOMPARE(alerts.waitForTitle(), QStringLiteral("The operation couldn't be completed"));
    QVERIFY(!m_host->presentedScreen());
    release->store(true);
    QTRY_VERIFY_WITH_TIMEOUT(
        !screen->threadModel()->index(row).data(CommentThreadModel::ThumbnailRole).value<QImage>().isNull(), timeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(!AlertPresenter::visibleAlert(screen), timeoutMs);
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->pictureRect(row).center());
    auto *viewer = qobject_cast<ImageVC *>(m_host->presentedScreen());
    QVERIFY(viewer);
    QVERIFY(!viewer->image().isNull());
    QTest::mouseClick(viewer->closeButton(), Qt::LeftButton);
    QVERIFY(!m_host->presentedScreen());
    // Only the first picture, and only once, however often the thread is fetched and painted.
    screen->pullToRefresh();
    QTRY_VERIFY_WITH_TIMEOUT(!screen->isFetching(), timeoutMs);
    (void)m_host->grab();
    const auto thumbnails = m_api->server.requests(QStringLiteral("/files/thumbnails/thumb_p/one.jpg"));
    QCOMPARE(thumbnails.size(), 1);
    QCOMPARE(m_api->server.requests().size() - m_api->server.requests(commentsPath).size()
                 - m_api->server.requests(tasksPath).size()
                 - m_api->server.requests(QStringLiteral("/api/settings-constants")).size()
                 - m_api->server.requests(QStringLiteral("/api/regenerate-token")).size(),
             1);
}

void TestCommentsVC::characterLimit_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("after");
    const QString full = QStringLiteral("a").repeated(512);
    QTest::newRow("512 characters fit") << QStringLiteral("a").repeated(511) << "a" << full;
    QTest::newRow("the 513th is refused") << full << "b" << full;
    QTest::newRow("an emoji with its skin tone counts one")
        << QStringLiteral("a").repeated(511) << QStringLiteral("👍🏽")
        << QStringLiteral("a").repeated(511) + QStringLiteral("👍🏽");
    QTest::newRow("a letter and its accent count one") << QStringLiteral("a").repeated(511) << QStringLiteral("e\u0301")
                                                       << QStringLiteral("a").repeated(511) + QStringLiteral("e\u0301");
    QTest::newRow("a paste over the limit is refused whole")
        << QStringLiteral("a").repeated(500) << QStringLiteral("b").repeated(20) << QStringLiteral("a").repeated(500);
}

void TestCommentsVC::characterLimit()
{
    QFETCH(QString, before);
    QFETCH(QString, typed);
    CustomInputBar bar;
    bar.inputTextView()->setPlainText(before);
    bar.inputTextView()->moveCursor(QTextCursor::End);
    bar.inputTextView()->insertPlainText(typed); // one edit, as a paste or a key press is
    QTEST(bar.inputTextView()->toPlainText(), "after");
}

void TestCommentsVC::sendButtonAfterReset()
{
    CustomInputBar bar;
    QVERIFY(!bar.sendButton()->isEnabled() && !bar.sendButtonActive());
    QTest::keyClicks(bar.inputTextView(), QStringLiteral("On site"));
    QVERIFY(bar.sendButton()->isEnabled() && bar.sendButtonActive());
    bar.attach(QImage(8, 8, QImage::Format_RGB32));
    bar.didPressSend();
    QCOMPARE(bar.inputTextView()->placeholderText(), QStringLiteral("Sending..."));
    bar.reset();
    QVERIFY(!bar.sendButton()->isEnabled() && !bar.sendButtonActive());
    QVERIFY(bar.attachments().isEmpty());
    QCOMPARE(bar.inputTextView()->placeholderText(), QStringLiteral("Leave a comment ..."));
}

void TestCommentsVC::layoutPassesShareOneFetch()
{
    auto inFlight = std::make_shared<std::atomic<int>>(0);
    auto most = std::make_shared<std::atomic<int>>(0);
    m_api->server.on("GET", commentsPath, [inFlight, most](const RecordedRequest &) {
        const int now = ++*inFlight;
        *most = std::max(most->load(), now);
        std::this_thread::sleep_for(std::chrono::milliseconds(150));
        --*inFlight;
        return CannedResponse{200, answer(QJsonArray{})};
    });
    CommentsVC *screen = openComments();
    QVERIFY(screen);
    const int before = m_api->server.requestCount(commentsPath);
    for (int i = 0; i < 20; ++i)
        screen->viewDidLayoutSubviews();
    QTRY_VERIFY_WITH_TIMEOUT(!screen->isFetching(), timeoutMs);
    QCOMPARE(m_api->server.requestCount(commentsPath), before + 1);
    QCOMPARE(most->load(), 1);
}

void TestCommentsVC::loadFailureAlert()
{
    m_api->server.on("GET", commentsPath, CannedResponse{500, {}});
    AlertLog alerts;
    CommentsVC *screen = openComments();
    QVERIFY(screen);
    QCOMPARE(alerts.waitForTitle(), CommentsVC::failureTitle());
    QVERIFY(screen->threadModel()->isEmpty());
}

QTEST_MAIN(TestCommentsVC)
#include "tst_commentsvc.moc"
