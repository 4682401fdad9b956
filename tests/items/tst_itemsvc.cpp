#include "items/blocktaskvc.h"
#include "items/itemactionvc.h"
#include "items/itemstexts.h"
#include "items/itemtableview.h"
#include "items/itemtableviewcell.h"
#include "support/screentest.h"
#include "support/shots.h"
#include "views/segmentedcontrol.h"
#include "views/textviewwithplaceholder.h"

#include <QAbstractItemModelTester>

using namespace ravelin;
using namespace ravelin::test;

class TestItemsVC : public ScreenTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { closeHost(); }

    void headerCountsAndFilteredRows();
    void multipleSelectionWithNothingChosen();
    void updateResults_data();
    void updateResults();
    void swipeActionsOnlyOnOpenRows();
    void completeAndReportFollowTheRules();
    void blockingReachesTheDashboard();
    void failedBlockKeepsTheSheet();
    void completingReachesTheDashboard();
    void closingWhileLoading();
    void loadFailureAlert();

    void oneRequestForADoubleTap_data();
    void oneRequestForADoubleTap();

private:
    // The dashboard with one in-progress task, opened on its items screen.
    ItemsVC *openItems(const QJsonArray &items);
    [[nodiscard]] Screen *presented() const { return m_host ? m_host->presentedScreen() : nullptr; }
};

void TestItemsVC::init()
{
    startHarness();
    servePumpStation();
    m_api->server.on("PUT", "/api/item/status", CannedResponse{200, R"({"success":true})"});
    m_api->server.on("POST", "/api/comment", CannedResponse{200, R"({"success":true})"});
    m_api->server.on("PUT", "/api/task/8", [](const RecordedRequest &request) {
        const int status = QJsonDocument::fromJson(request.body).object().value("task_status_id").toInt();
        return CannedResponse{200, answer(taskJson(taskId, "Pump station", status))};
    });
}

ItemsVC *TestItemsVC::openItems(const QJsonArray &items)
{
    m_api->server.on("GET", itemsPath, CannedResponse{200, answer(items)});
    return openOnlyTask(openHost(), int(items.size()), timeoutMs);
}

void TestItemsVC::headerCountsAndFilteredRows()
{
    ItemsVC *screen
        = openItems({itemJson(1, taskId, "Gauge", 3, QStringLiteral("CP-1")), itemJson(2, taskId, "Seal", 1),
                     itemJson(3, taskId, "Valve", 2), itemJson(4, taskId, "Gate", 1)});
    QVERIFY(screen);
    QAbstractItemModelTester tester(screen->itemModel(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(screen->title(), QStringLiteral("Pump station"));
    QCOMPARE((QStringList{screen->overviewLbl()->text(), screen->acceptedCountLbl()->text(),
                          screen->rejectedCountLbl()->text(), screen->assignedByLbl()->text()}),
             (QStringList{"4 Total", "2 Completed", "1 Incidents", "Dispatch Desk"}));
    QVERIFY(screen->statusBreakdown()->isVisible());
    grabShot(*m_host, QStringLiteral("items"));

    // On "Completed" the counts and the rows are the completed items', and row 0
    // is the first completed item, not the task's first item.
    QTest::mouseClick(screen->filterSegment()->segmentButton(0), Qt::LeftButton);
    QCOMPARE(screen->overviewLbl()->text(), QStringLiteral("2 Total"));
    QVERIFY(!screen->statusBreakdown()->isVisible());
    QCOMPARE(screen->itemModel()->rowCount(), 2);
    TaskPtr task = screen->viewModel()->task();
    QCOMPARE(task->itemList.filterData.status, ItemStatus::ok);
    ItemTableView *table = screen->tableView();
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->rowRect(0).center());
    auto *action = qobject_cast<ItemActionVC *>(presented());
    QVERIFY(action);
    QCOMPARE(action->viewModel()->items(), QList<ItemPtr>{task->itemList.items.at(1)});
    QCOMPARE(screen->viewModel()->selectedItems(), QList<ItemPtr>{task->itemList.items.at(1)});
}

void TestItemsVC::multipleSelectionWithNothingChosen()
{
    ItemsVC *screen = openItems({itemJson(1, taskId, "Gauge", 3)});
    QVERIFY(screen);
    QTest::mouseClick(screen->multipleSelectionBtn(), Qt::LeftButton);
    QVERIFY(screen->isMultipleSelection());
    QVERIFY(screen->saveBtn()->isVisible() && screen->multipleSelectionBtn()->isHidden()
            && screen->taskBtnsStack()->isHidden());
    QTest::mouseClick(screen->saveBtn(), Qt::LeftButton);
    QCOMPARE(topAlert(screen).mid(0, 2), (QStringList{"No items selected", " "}));
    // The mode is left once the alert has gone, and nothing was opened.
    QTRY_VERIFY_WITH_TIMEOUT(!screen->isMultipleSelection(), timeoutMs);
    QVERIFY(!AlertPresenter::visibleAlert(screen));
    QVERIFY(screen->multipleSelectionBtn()->isVisible() && screen->saveBtn()->isHidden());
    QVERIFY(!presented());
}

void TestItemsVC::updateResults_data()
{
    QTest::addColumn<QList<int>>("rows"); // one row: tapped; several: chosen in multiple selection
    QTest::addColumn<bool>("report");
    QTest::addColumn<QString>("note");
    QTest::addColumn<bool>("picture");
    QTest::addColumn<bool>("serverAccepts");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("message");
    QTest::newRow("one item completed with note and photo")
        << QList<int>{0} << false << "Needle steady" << true << true
        << QStringLiteral("Item Status Successfully Updated!") << "\n Item:\n\nGauge";
    QTest::newRow("three items reported")
        << QList<int>{0, 1, 2} << true << "Leaking" << false << true
        << QStringLiteral("Items Status Successfully Updated!") << "\n Items:\n\nGauge\nSeal\nValve";
    QTest::newRow("one item failing") << QList<int>{0} << false << "" << false << false
                                      << QStringLiteral("Item Status Update Failed!") << "\n Item:\n\nGauge";
}

void TestItemsVC::updateResults()
{
    QFETCH(QList<int>, rows);
    QFETCH(bool, report);
    QFETCH(QString, note);
    QFETCH(bool, picture);
    QFETCH(bool, serverAccepts);
    if (!serverAccepts)
        m_api->server.on("PUT", "/api/item/status", CannedResponse{500, {}});
    AlertLog alerts;
    ItemsVC *screen = openItems(
        {itemJson(11, taskId, "Gauge", 3), itemJson(12, taskId, "Seal", 3), itemJson(13, taskId, "Valve", 3)});
    QVERIFY(screen);
    ItemTableView *table = screen->tableView();
    if (rows.size() == 1) {
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->rowRect(rows.first()).center());
    } else {
        screen->setMultipleSelection(true);
        for (const int row : rows)
            QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->rowRect(row).center());
        QTest::mouseClick(screen->saveBtn(), Qt::LeftButton);
    }
    auto *action = qobject_cast<ItemActionVC *>(presented());
    QVERIFY(action);
    if (!note.isEmpty()) {
        action->noteField()->setFocus();
        QTest::keyClicks(action->noteField(), note);
    }
    if (picture) {
        QTest::mouseClick(action->addFileButton(), Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(action->attachedPicture().has_value(), timeoutMs);
        QVERIFY(action->attachmentView()->isVisible());
        grabShot(*m_host, QStringLiteral("item-action"));
    }
    QTest::mouseClick(report ? action->reportButton() : action->completeButton(), Qt::LeftButton);

    const int loads = m_api->server.requestCount(itemsPath);
    QTEST(alerts.waitForTitle(), "title");
    QTEST(alerts.last().value(1), "message");
    QVERIFY(!presented());
    QVERIFY(screen->viewModel()->selectedItems().isEmpty());

    // The items in the order chosen, with the new status; the picture went up
    // first. The whole body and the upload: tst_itemsvm updateBody.
    QJsonArray items = m_api->server.lastBody(QStringLiteral("/api/item/status")).value("items").toArray();
    QCOMPARE(items.size(), rows.size());
    for (int i = 0; i < rows.size(); ++i) {
        QCOMPARE(items.at(i)["id"].toInt(), 11 + rows.at(i));
        QCOMPARE(items.at(i)["item_status_id"].toInt(), report ? 2 : 1);
        QCOMPARE(items.at(i)["media_path"].isString(), picture);
    }
    // Once the alert is gone the items load again.
    QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requestCount(itemsPath), loads + 1, timeoutMs);
}

void TestItemsVC::swipeActionsOnlyOnOpenRows()
{
    ItemsVC *screen = openItems({itemJson(1, taskId, "Seal", 1), itemJson(2, taskId, "Gauge", 3)});
    QVERIFY(screen);
    ItemTableView *table = screen->tableView();
    const auto swipe = [table](int row) {
        const QPoint start = table->rowRect(row).center() + QPoint(80, 0);
        QTest::mousePress(table->viewport(), Qt::LeftButton, {}, start);
        for (int i = 1; i <= 10; ++i)
            QTest::mouseMove(table->viewport(), start - QPoint(20 * i, 0));
        QTest::mouseRelease(table->viewport(), Qt::LeftButton, {}, start - QPoint(200, 0));
    };
    swipe(0);
    QCOMPARE(table->swipedRow(), -1);
    QVERIFY(!screen->itemModel()->index(0).data(TaskItemsModel::HasSwipeActionsRole).toBool());

    swipe(1);
    QTRY_COMPARE_WITH_TIMEOUT(table->cellPainter()->swipeOffset(), qreal(2 * ItemTableViewCell::swipeActionWidth),
                              timeoutMs);
    QCOMPARE(table->swipedRow(), 1);
    grabShot(*m_host, QStringLiteral("items-swipe"));
    // "Incidents", the second action, leads to the item's action sheet.
    const QRect incidents = ItemTableViewCell::swipeActionRects(table->rowRect(1), 2).at(1);
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, incidents.center());
    auto *action = qobject_cast<ItemActionVC *>(presented());
    QVERIFY(action);
    QCOMPARE(action->viewModel()->items().first()->name, QStringLiteral("Gauge"));
    QCOMPARE(table->swipedRow(), -1);
}

void TestItemsVC::completeAndReportFollowTheRules()
{
    // The rules themselves: tst_itemsvm completeRules and reportNeedsANote. Here the sheet follows them.
    ItemsVC *screen = openItems({itemJson(1, taskId, "Gauge", 3, QStringLiteral("CP-1"))});
    QVERIFY(screen);
    screen->actOnRow(0);
    auto *action = qobject_cast<ItemActionVC *>(presented());
    QVERIFY(action);
    QVERIFY(action->checkpointImageView()->isVisible());
    QVERIFY(!action->completeButton()->isEnabled());
    QVERIFY(action->infoLabel()->isVisible());
    QCOMPARE(action->infoLabel()->text(), action->viewModel()->completeBlocker().value_or(QString()));
    QVERIFY(!action->reportButton()->isEnabled());
    action->noteField()->setFocus();
    QTest::keyClicks(action->noteField(), QStringLiteral("  "));
    QVERIFY(!action->reportButton()->isEnabled());
    QTest::keyClicks(action->noteField(), QStringLiteral("Cracked"));
    QVERIFY(action->reportButton()->isEnabled());
}

void TestItemsVC::blockingReachesTheDashboard()
{
    ItemsVC *screen = openItems({itemJson(1, taskId, "Gauge", 3)});
    QVERIFY(screen);
    AlertLog alerts;
    QTest::mouseClick(screen->markAsBlockedBtn(), Qt::LeftButton);
    auto *block = qobject_cast<BlockTaskVC *>(presented());
    QVERIFY(block);
    QCOMPARE((QStringList{block->itemNamesLabel()->text(), block->detailLabel()->text()}),
             (QStringList{"Gauge", "Gauge details"}));
    grabShot(*m_host, QStringLiteral("block-task"));
    // Without a reason the task is blocked all the same (no comment is posted for
    // a blank or empty one: tst_itemsvm block).
    QTest::mouseClick(block->blockButton(), Qt::LeftButton);
    QCOMPARE(alerts.waitForTitle(), QStringLiteral("Task marked as blocked!"));
    QCOMPARE(alerts.last().value(1), QStringLiteral("\n  The task status Pump station was changed to `Blocked`\n "));
    QVERIFY(!presented());
    QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requestCount(QStringLiteral("/api/task/8")), 1, timeoutMs);
    QCOMPARE(m_api->server.lastBody(QStringLiteral("/api/task/8")).value("task_status_id").toInt(), 5);
}

void TestItemsVC::failedBlockKeepsTheSheet()
{
    m_api->server.on("POST", "/api/comment", CannedResponse{500, {}});
    ItemsVC *screen = openItems({itemJson(1, taskId, "Gauge", 3)});
    QVERIFY(screen);
    QTest::mouseClick(screen->markAsBlockedBtn(), Qt::LeftButton);
    auto *block = qobject_cast<BlockTaskVC *>(presented());
    QVERIFY(block);
    block->noteField()->setFocus();
    QTest::keyClicks(block->noteField(), QStringLiteral("Gate locked"));
    AlertLog alerts;
    QTest::mouseClick(block->blockButton(), Qt::LeftButton);
    QCOMPARE(alerts.waitForTitle(), QStringLiteral("Failed to mark task as blocked!"));
    QTRY_VERIFY_WITH_TIMEOUT(!AlertPresenter::visibleAlert(block), timeoutMs);
    QCOMPARE(presented(), block);
    QCOMPARE(block->noteField()->text(), QStringLiteral("Gate locked"));
    QVERIFY(block->blockButton()->isEnabled());
    QCOMPARE(m_api->server.requestCount(QStringLiteral("/api/task/8")), 0);
}

void TestItemsVC::completingReachesTheDashboard()
{
    ItemsVC *screen = openItems({itemJson(1, taskId, "Gauge", 3)});
    QVERIFY(screen);
    const int fetches = m_api->server.requestCount(tasksPath);
    QTest::mouseClick(screen->completeBtn(), Qt::LeftButton);
    QCOMPARE(
        topAlert(screen).mid(0, 2),
        (QStringList{"Task successfully completed!", "\n  The task status Pump station was changed to `Complete`\n "}));
    QTRY_COMPARE_WITH_TIMEOUT(m_api->server.requestCount(QStringLiteral("/api/task/8")), 1, timeoutMs);
    // The rest of the body: tst_apidata updateTaskStatusBody.
    QCOMPARE(m_api->server.lastBody(QStringLiteral("/api/task/8")).value("task_status_id").toInt(), 6);
    QTRY_VERIFY_WITH_TIMEOUT(m_api->server.requestCount(tasksPath) > fetches, timeoutMs);
}

void TestItemsVC::closingWhileLoading()
{
    ItemsVC *screen = openItems({itemJson(1, taskId, "Gauge", 3)});
    QVERIFY(screen);
    m_api->server.on("GET", itemsPath, [](const RecordedRequest &) {
        QThread::msleep(300);
        return CannedResponse{200, answer(QJsonArray{itemJson(1, taskId, "Gauge", 3)})};
    });
    const int loads = m_api->server.requestCount(itemsPath);
    screen->pullToRefresh();
    QPointer<ItemsVC> guard(screen);
    m_host->pop();
    QTRY_VERIFY_WITH_TIMEOUT(guard.isNull(), timeoutMs);
    // The answer arrives after the screen is gone.
    QTRY_VERIFY_WITH_TIMEOUT(m_api->server.requestCount(itemsPath) > loads && answersTaken(m_api->network), timeoutMs);
    QCOMPARE(m_host->screens().size(), 1);
}

void TestItemsVC::loadFailureAlert()
{
    ItemsVC *screen = openItems({itemJson(1, taskId, "Gauge", 3)});
    QVERIFY(screen);
    // The server fails while the screen fetches its items again: the rows stay.
    m_api->server.on("GET", itemsPath, CannedResponse{500, {}});
    AlertLog alerts;
    screen->pullToRefresh();
    QCOMPARE(alerts.waitForTitle(), ItemsTexts::loadFailureTitle());
    QVERIFY(!screen->refreshControl()->isRefreshing());
    QCOMPARE(screen->itemModel()->rowCount(), 1);
}

void TestItemsVC::oneRequestForADoubleTap_data()
{
    QTest::addColumn<QString>("sheet");
    QTest::addColumn<QString>("path");
    QTest::newRow("complete an item") << QStringLiteral("complete") << "/api/item/status";
    QTest::newRow("report an item") << QStringLiteral("report") << "/api/item/status";
    QTest::newRow("block the task") << QStringLiteral("block") << "/api/comment";
}

// The note sheets send once however often the worker taps while a request runs.
void TestItemsVC::oneRequestForADoubleTap()
{
    QFETCH(QString, sheet);
    QFETCH(QString, path);
    ItemsVC *screen = openItems({itemJson(1, taskId, "Gauge", 3)});
    QVERIFY(screen);
    AlertLog alerts;
    std::function<void()> tap;
    if (sheet == "block") {
        QTest::mouseClick(screen->markAsBlockedBtn(), Qt::LeftButton);
        auto *block = qobject_cast<BlockTaskVC *>(presented());
        QVERIFY(block);
        tap = [block] { block->block(); };
    } else {
        screen->actOnRow(0);
        auto *action = qobject_cast<ItemActionVC *>(presented());
        QVERIFY(action);
        tap = sheet == "report" ? std::function<void()>([action] { action->report(); })
                                : std::function<void()>([action] { action->complete(); });
    }
    auto *note = qobject_cast<NoteSheet *>(presented());
    note->noteField()->setFocus();
    QTest::keyClicks(note->noteField(), QStringLiteral("Valve seized"));

    tap();
    tap();
    // Once the answer has closed the sheet, one request went out and one result was shown.
    QTRY_VERIFY_WITH_TIMEOUT(!presented() && !alerts.shown.isEmpty(), timeoutMs);
    QCOMPARE(m_api->server.requests(path).size(), 1);
    QCOMPARE(alerts.shown.size(), 1);
}

QTEST_MAIN(TestItemsVC)
#include "tst_itemsvc.moc"
