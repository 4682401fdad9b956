#include "items/blocktaskvc.h"
#include "items/blocktaskvcdelegate.h"
#include "items/blocktaskvm.h"
#include "items/itemactionvc.h"
#include "items/itemactionvcdelegate.h"
#include "items/itemactionvm.h"
#include "support/apiharness.h"
#include "views/textviewwithplaceholder.h"

#include <QFocusEvent>
#include <QTest>

using namespace ravelin;
using namespace ravelin::test;

namespace {

constexpr int timeoutMs = 10000;

// Counts what the sheets report once they have closed.
struct Reports
    : ItemActionVCDelegate
    , BlockTaskVCDelegate
{
    void didUpdateItemStatus(bool) override { ++count; }
    void didBlockTask() override { ++count; }
    int count = 0;
};

} // namespace

// The note sheets send once however often the worker taps while a request runs.
class TestNoteSheets : public QObject
{
    Q_OBJECT

private slots:
    void oneRequestForADoubleTap_data();
    void oneRequestForADoubleTap();
};

void TestNoteSheets::oneRequestForADoubleTap_data()
{
    QTest::addColumn<QString>("sheet");
    QTest::addColumn<QString>("path");
    QTest::newRow("complete an item") << "complete"
                                      << "/api/item/status";
    QTest::newRow("report an item") << "report"
                                    << "/api/item/status";
    QTest::newRow("block the task") << "block"
                                    << "/api/comment";
}

void TestNoteSheets::oneRequestForADoubleTap()
{
    QFETCH(QString, sheet);
    QFETCH(QString, path);

    ApiHarness api;
    api.server.on("PUT", "/api/item/status", CannedResponse{200, R"({"success":true,"data":{"task_id":5}})"});
    api.server.on("POST", "/api/comment", CannedResponse{200, R"({"success":true})"});
    auto task = std::make_shared<Task>();
    task->id = 5;
    auto item = std::make_shared<Item>();
    item->id = 11;
    item->taskId = 5;
    UsersData users;
    users.currentUser.id = 7;
    Reports reports;

    std::unique_ptr<NoteSheet> screen;
    std::function<void()> tap;
    if (sheet == "block") {
        auto *block = new BlockTaskVC;
        block->setViewModel(new BlockTaskVM(task, &api.manager, QString(), users));
        block->setDelegate(&reports);
        tap = [block] { block->block(); };
        screen.reset(block);
    } else {
        auto *action = new ItemActionVC;
        action->setViewModel(new ItemActionVM({item}, task, &api.manager, QString(), users));
        action->setDelegate(&reports);
        tap = sheet == "report" ? std::function<void()>([action] { action->report(); })
                                : std::function<void()>([action] { action->complete(); });
        screen.reset(action);
    }
    screen->loadViewIfNeeded();
    // The worker taps into the note (the placeholder goes) and writes.
    QFocusEvent focusIn(QEvent::FocusIn);
    QCoreApplication::sendEvent(screen->noteField(), &focusIn);
    screen->noteField()->setText(QStringLiteral("Valve seized"));

    tap();
    tap();
    // Once the answer has closed the sheet, one request went out and one report came back.
    QTRY_COMPARE_WITH_TIMEOUT(reports.count, 1, timeoutMs);
    QCOMPARE(api.server.requests(path).size(), 1);
}

QTEST_MAIN(TestNoteSheets)
#include "tst_notesheets.moc"
