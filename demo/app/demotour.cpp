#include "demo/app/demotour.h"

#include "api/outboxsender.h"
#include "comments/commentsvc.h"
#include "comments/commentsvm.h"
#include "comments/commentthreadmodel.h"
#include "comments/commentthreadview.h"
#include "comments/custominputbar.h"
#include "comments/imagevc.h"
#include "demo/app/democamera.h"
#include "demo/app/demohostwindow.h"
#include "demo/app/hostbar.h"
#include "demo/app/hostpanel.h"
#include "demo/app/signinscreen.h"
#include "demo/app/switchablenetworkaccess.h"
#include "demo/app/taskeventsheet.h"
#include "demo/app/workerrow.h"
#include "filter/filtervc.h"
#include "filter/inputfield.h"
#include "host/navigationbar.h"
#include "host/outboxlistmodel.h"
#include "host/outboxvc.h"
#include "host/ravelinnavvc.h"
#include "host/screen.h"
#include "host/synctexts.h"
#include "host/taskupdateevent.h"
#include "items/blocktaskvc.h"
#include "items/itemactionvc.h"
#include "items/itemlistmodel.h"
#include "items/itemstexts.h"
#include "items/itemsvc.h"
#include "items/itemtableview.h"
#include "items/qrscannervc.h"
#include "tasks/dashboardheaderview.h"
#include "tasks/dashboardtexts.h"
#include "tasks/dashboardvc.h"
#include "tasks/dashboardvm.h"
#include "tasks/taskcard.h"
#include "tasks/taskstrip.h"
#include "views/alertpresenter.h"
#include "views/alertview.h"
#include "views/refreshablescrollarea.h"
#include "views/segmentedcontrol.h"
#include "views/textviewwithplaceholder.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFrame>
#include <QLabel>
#include <QMouseEvent>
#include <QNetworkReply>
#include <QPixmap>
#include <QPushButton>
#include <QSet>
#include <QTimer>
#include <QToolButton>

#include <algorithm>
#include <cstdio>

namespace ravelin {

using namespace std::chrono_literals;

namespace {

const QString kTaskEventKind = QStringLiteral("task-assigned");

QString statusText(TaskStatus status)
{
    return TaskStatuses::rawValue(status);
}

AlertView *alertTitled(const QWidget *window, const std::function<bool(const QString &)> &matches)
{
    AlertView *alert = AlertPresenter::visibleAlert(window);
    return alert && matches(alert->title()) ? alert : nullptr;
}

QString oneLine(QString text)
{
    return text.replace(QLatin1Char('\n'), QStringLiteral(" / "));
}

} // namespace

DemoTour::DemoTour(DemoHostWindow *window, Options options)
    : m_window(window)
    , m_options(std::move(options))
    , m_dir(m_options.outputDir)
{
    if (window) {
        m_connections.append(
            QObject::connect(window, &DemoHostWindow::swiped, window, [this](bool isShown) { m_lastSwipe = isShown; }));
    }
}

DemoTour::~DemoTour()
{
    for (const QMetaObject::Connection &connection : std::as_const(m_connections))
        QObject::disconnect(connection);
}

int DemoTour::run()
{
    if (!m_window) {
        std::fprintf(stderr, "Tour failed: there is no window to tour\n");
        return 1;
    }
    if (!m_dir.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "Tour failed: cannot create the folder %s\n", qPrintable(m_dir.absolutePath()));
        return 1;
    }
    // Pictures of an earlier tour would mix with this one's.
    const QStringList old = m_dir.entryList({QStringLiteral("[0-9][0-9]-*.png")}, QDir::Files);
    for (const QString &file : old)
        m_dir.remove(file);
    m_summaryFile.setFileName(m_dir.filePath(QStringLiteral("summary.txt")));
    if (!m_summaryFile.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        std::fprintf(stderr, "Tour failed: cannot write %s\n", qPrintable(m_summaryFile.fileName()));
        return 1;
    }

    m_window->show();
    settle(200ms);
    try {
        stepSignIn();
        stepDashboard();
        if (m_options.atScale)
            stepAtScale();
        stepAcknowledge();
        stepStart();
        stepItems();
        stepItemsFilter();
        stepItemComplete();
        stepItemsReport();
        stepScan();
        stepComments();
        stepBlock();
        stepOffline();
        stepFilter();
        stepHostPanel();
        stepTaskEvent();
        stepEmergency();
    } catch (const StepFailure &failure) {
        m_failure = QStringLiteral("Tour failed at step \"%1\": %2")
                        .arg(m_currentStep, QString::fromStdString(failure.what()));
        m_summaryFile.write((m_failure + QLatin1Char('\n')).toUtf8());
        m_summaryFile.close();
        std::fflush(stdout);
        std::fprintf(stderr, "%s\n", qPrintable(m_failure));
        return 1;
    }
    m_summaryFile.close();
    std::printf("Tour finished: %d pictures and summary.txt in %s\n", m_step, qPrintable(m_dir.absolutePath()));
    std::fflush(stdout);
    return 0;
}

// Steps ----------------------------------------------------------------------

void DemoTour::stepSignIn()
{
    m_currentStep = QStringLiteral("sign-in");
    DemoHostWindow &window = *m_window;
    if (window.setup().preset) {
        // A session given on the command line: nothing to choose, no request.
        window.signIn(window.setup().preset->userId);
        waitFor(QStringLiteral("the session to start"), [&window] { return window.navVC() != nullptr; });
        m_signedIn = true;
        return;
    }

    SignInScreen *screen = window.signInScreen();
    if (screen->workerRows().isEmpty())
        throw StepFailure(QStringLiteral("the sign-in screen offers nobody to sign in as"));
    const qint64 workerId = m_options.workerId.value_or(screen->workerRows().constFirst()->workerId());
    if (!screen->selectWorker(workerId))
        throw StepFailure(QStringLiteral("worker %1 is not offered").arg(workerId));
    QString name;
    for (const WorkerRow *row : screen->workerRows()) {
        if (row->workerId() == workerId)
            name = row->name();
    }
    settle(150ms);
    record(QStringLiteral("sign-in"),
           QStringLiteral("%1 field workers offered, signing in as %2 (id %3) at https://%4")
               .arg(screen->workerRows().size())
               .arg(name)
               .arg(workerId)
               .arg(window.setup().baseUrl));

    screen->signInButton()->click();
    waitFor(QStringLiteral("the sign-in answer"), [&window, screen] {
        return window.navVC() != nullptr || (!screen->isBusy() && !screen->message().isEmpty());
    });
    if (!window.navVC())
        throw StepFailure(screen->message());
    m_signedIn = true;
}

void DemoTour::stepDashboard()
{
    m_currentStep = QStringLiteral("dashboard");
    waitFor(QStringLiteral("the dashboard to load its tasks"), [this] {
        if (!m_window->navVC() || !m_window->navVC()->dashboard())
            return false;
        DashboardVC &screen = dashboard();
        if (alertTitled(m_window, [](const QString &title) { return title == DashboardTexts::fetchFailureTitle(); }))
            throw StepFailure(QStringLiteral("the dashboard could not fetch the tasks"));
        return screen.viewModel() && dashboardIdle() && !screen.viewModel()->taskList().tasks.isEmpty()
            && !screen.rows().isEmpty();
    });
    watchRefreshes();
    settle(300ms);
    const DashboardVM &viewModel = *dashboard().viewModel();
    record(QStringLiteral("dashboard"),
           QStringLiteral("%1, %2 tasks in %3 sections (%4)")
               .arg(m_window->session() ? m_window->session()->userName : QString())
               .arg(viewModel.taskList().tasks.size())
               .arg(viewModel.sections().size())
               .arg(sectionsText()));
}

void DemoTour::stepAtScale()
{
    m_currentStep = QStringLiteral("at-scale");
    // The worker's tasks in progress by the size of their checklists.
    QList<std::pair<qint64, TaskPtr>> inProgress;
    for (const TaskPtr &task : dashboard().viewModel()->taskList().tasks) {
        if (task && task->currentStatus == TaskStatus::in_progress)
            inProgress.append({task->progress.ok + task->progress.nok + task->progress.open, task});
    }
    std::stable_sort(inProgress.begin(), inProgress.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    if (inProgress.size() < 2) {
        skip(m_currentStep, QStringLiteral("fewer than two tasks in progress to compare"));
        return;
    }
    const TaskPtr small = inProgress.constFirst().second;
    const TaskPtr big = inProgress.constLast().second;
    const auto itemCount
        = [this] { return ItemsTexts::counts(itemsScreen().viewModel()->task()->itemList.items).total; };
    const auto commentCount = [this] { return commentsScreen().viewModel()->comments().size(); };
    const auto figures = [](const Opening &opening) {
        return QStringLiteral("%1 ms (longest stall %2 ms)").arg(opening.shownMs).arg(opening.longestStallMs);
    };

    // The small one first: what the big one takes longer is what its size costs.
    const Opening smallChecklist = openChecklist(small);
    const auto smallItems = itemCount();
    const Opening smallThread = openThread();
    const auto smallComments = commentCount();
    backToDashboard();

    const Opening bigChecklist = openChecklist(big);
    record(QStringLiteral("at-scale-checklist"),
           QStringLiteral("'%1' %2 items shown in %3; '%4' %5 items in %6: %7 ms later")
               .arg(big->name)
               .arg(itemCount())
               .arg(figures(bigChecklist), small->name)
               .arg(smallItems)
               .arg(figures(smallChecklist))
               .arg(bigChecklist.shownMs - smallChecklist.shownMs));

    const Opening bigThread = openThread();
    // Pictures in sight, and within one more screen up or down.
    CommentsVC &screen = commentsScreen();
    CommentThreadView *view = screen.tableView();
    const QRect sight = view->sight();
    const QRect nearby = sight.adjusted(0, -sight.height(), 0, sight.height());
    int withPicture = 0;
    int inSight = 0;
    int within = 0;
    for (int row = 0; row < screen.threadModel()->rowCount(); ++row) {
        if (!screen.threadModel()->index(row).data(CommentThreadModel::HasPictureRole).toBool())
            continue;
        ++withPicture;
        const QRect picture = view->pictureRect(row);
        inSight += picture.intersects(sight) ? 1 : 0;
        within += picture.intersects(nearby) ? 1 : 0;
    }
    record(QStringLiteral("at-scale-thread"),
           QStringLiteral("%1 comments (%2 with a picture) shown in %3, %4 pictures fetched (%5 in sight, %6 within "
                          "a screen more); %7 comments in %8: %9 ms later")
               .arg(commentCount())
               .arg(withPicture)
               .arg(figures(bigThread))
               .arg(bigThread.picturesFetched)
               .arg(inSight)
               .arg(within)
               .arg(smallComments)
               .arg(figures(smallThread))
               .arg(bigThread.shownMs - smallThread.shownMs));

    m_currentStep = QStringLiteral("at-scale-post");
    const auto [sinceSend, sinceAnswer] = postMeasured(QStringLiteral("Checked the whole list again."));
    record(m_currentStep,
           QStringLiteral("a comment posted into %1 comments: shown as sent %2 ms after the server's "
                          "answer (%3 ms after Send)")
               .arg(commentCount() - 1)
               .arg(sinceAnswer)
               .arg(sinceSend));
    backToDashboard();
}

std::pair<qint64, qint64> DemoTour::postMeasured(const QString &text)
{
    CommentsVC &screen = commentsScreen();
    CustomInputBar *bar = screen.inputBar();
    type(bar->inputTextView(), text);
    QElapsedTimer clock;
    qint64 answeredMs = -1;
    QMetaObject::Connection answers;
    if (SwitchableNetworkAccess *network = m_window->network()) {
        answers = QObject::connect(
            network, &QNetworkAccessManager::finished, m_window, [&clock, &answeredMs](QNetworkReply *reply) {
                if (reply->request().attribute(QNetworkRequest::CustomVerbAttribute).toByteArray() == "POST"
                    && reply->url().path().endsWith(QLatin1String("/comment")))
                    answeredMs = clock.elapsed();
            });
    }
    clock.start();
    bar->sendButton()->click();
    waitFor(QStringLiteral("the posted comment to show as sent"), [&screen, &text, &answeredMs] {
        const CommentThreadModel *model = screen.threadModel();
        const QModelIndex last = model->index(model->lastCommentRow());
        return answeredMs >= 0 && last.data(Qt::AccessibleTextRole).toString() == text
            && last.data(CommentThreadModel::SyncMarkRole).value<SyncMark>() == SyncMark::none
            && screen.tableView()->visualRect(last).intersects(screen.tableView()->sight());
    });
    m_window->repaint();
    const qint64 shownMs = clock.elapsed();
    QObject::disconnect(answers);
    settle(300ms);
    return {shownMs, shownMs - answeredMs};
}

DemoTour::Opening DemoTour::openChecklist(const TaskPtr &task)
{
    m_currentStep = QStringLiteral("at-scale: '%1'").arg(task->name);
    return measureOpening(
        QStringLiteral("the checklist of '%1'").arg(task->name), [this, task] { dashboard().openTask(task); },
        [this] {
            auto *screen = qobject_cast<ItemsVC *>(navVC().topScreen());
            return screen && !screen->refreshControl()->isRefreshing() && screen->refreshControl()->indicatorBand() == 0
                && screen->itemModel()->rowCount() > 0 && !AlertPresenter::visibleAlert(m_window);
        });
}

DemoTour::Opening DemoTour::openThread()
{
    ItemsVC &items = itemsScreen();
    return measureOpening(
        QStringLiteral("the thread of '%1'").arg(items.title()), [&items] { items.commentsButton()->trigger(); },
        [this] {
            auto *screen = qobject_cast<CommentsVC *>(navVC().topScreen());
            return screen && !screen->isFetching() && screen->refreshControl()->indicatorBand() == 0
                && !screen->threadModel()->isEmpty();
        });
}

void DemoTour::backToDashboard()
{
    const int since = m_refreshesEnded;
    navVC().popToRoot();
    waitForRefreshAfter(since, QStringLiteral("the dashboard to reload after going back"));
}

DemoTour::Opening DemoTour::measureOpening(const QString &what, const std::function<void()> &open,
                                           const std::function<bool()> &shown)
{
    constexpr qint64 beatMs = 5;
    Opening opening;
    QElapsedTimer clock;
    qint64 lastBeat = 0;
    const auto beat = [&] {
        const qint64 now = clock.elapsed();
        opening.longestStallMs = std::max(opening.longestStallMs, now - lastBeat - beatMs);
        lastBeat = now;
    };
    QTimer heartbeat;
    heartbeat.setTimerType(Qt::PreciseTimer);
    heartbeat.setInterval(int(beatMs));
    QObject::connect(&heartbeat, &QTimer::timeout, m_window, beat);
    QMetaObject::Connection fetches;
    if (SwitchableNetworkAccess *network = m_window->network()) {
        fetches
            = QObject::connect(network, &SwitchableNetworkAccess::requestMade, m_window, [&opening](const QUrl &url) {
                  if (url.path().startsWith(QLatin1String("/files/")))
                      ++opening.picturesFetched;
              });
    }
    clock.start();
    heartbeat.start();
    open();
    waitFor(what, shown);
    // Shown means painted: the window draws once more before the clock stops.
    m_window->repaint();
    opening.shownMs = clock.elapsed();
    beat();
    heartbeat.stop();
    // What the screen fetches right after it shows counts too.
    settle(1000ms);
    QObject::disconnect(fetches);
    return opening;
}

void DemoTour::stepAcknowledge()
{
    m_currentStep = QStringLiteral("acknowledge");
    const TaskPtr task = findTask([](const Task &t) { return t.currentStatus == TaskStatus::assigned; });
    if (!task) {
        skip(m_currentStep, QStringLiteral("no assigned task on the dashboard"));
        return;
    }
    const qint64 id = task->id;
    const QString name = task->name;

    // The card's acknowledge button, as the worker taps it.
    bool tapped = false;
    for (TaskTableViewCell *row : dashboard().rows()) {
        const QList<TaskPtr> tasks = row->tasks();
        for (int item = 0; item < tasks.size() && !tapped; ++item) {
            if (tasks.at(item)->id != id)
                continue;
            const QModelIndex index = row->model()->index(item, 0);
            // In full view first: a tap on a card cut off at an edge only brings it into view.
            dashboard().refreshControl()->ensureWidgetVisible(row, 0, 0);
            row->scrollTo(index);
            tapped
                = tap(row->viewport(), TaskCollectionViewCell::acknowledgeButtonRect(row->visualRect(index)).center());
        }
    }
    if (!tapped)
        dashboard().didTapAcknowledge(task);

    const QString promptTitle = DashboardTexts::statusPrompt(*task).value_or(StatusPrompt{}).title;
    const auto isPrompt = [&promptTitle](const QString &title) { return title == promptTitle; };
    waitFor(QStringLiteral("the acknowledge prompt"),
            [this, &isPrompt] { return alertTitled(m_window, isPrompt) != nullptr; });
    AlertView *prompt = alertTitled(m_window, isPrompt);
    settle(100ms);
    record(QStringLiteral("acknowledge-prompt"),
           QStringLiteral("\"%1\" with %2").arg(prompt->title(), prompt->actionTitles().join(QStringLiteral(" / "))));

    const int since = m_refreshesEnded;
    prompt = alertTitled(m_window, isPrompt);
    if (!prompt || !prompt->triggerAction(DashboardTexts::promptYes()))
        throw StepFailure(QStringLiteral("the prompt has no \"Yes\" button"));
    waitFor(QStringLiteral("task %1 to be Acknowledged").arg(id), [this, id] {
        const TaskPtr now = taskById(id);
        return now && now->currentStatus == TaskStatus::acknowledged;
    });
    waitForRefreshAfter(since, QStringLiteral("the dashboard to reload after the change"));
    m_acknowledgedTaskId = id;
    settle(250ms);
    record(QStringLiteral("acknowledge"),
           QStringLiteral("task %1 '%2' Assigned -> Acknowledged, %3 sections")
               .arg(id)
               .arg(name)
               .arg(dashboard().viewModel()->sections().size()));
}

void DemoTour::stepStart()
{
    m_currentStep = QStringLiteral("start");
    const qint64 justAcknowledged = m_acknowledgedTaskId;
    TaskPtr task = findTask([justAcknowledged](const Task &t) {
        return t.currentStatus == TaskStatus::acknowledged && t.id != justAcknowledged;
    });
    if (!task)
        task = findTask([](const Task &t) { return t.currentStatus == TaskStatus::acknowledged; });
    if (!task) {
        skip(m_currentStep, QStringLiteral("no acknowledged task on the dashboard"));
        return;
    }
    const qint64 id = task->id;
    const QString name = task->name;
    const qsizetype screensBefore = navVC().screens().size();

    dashboard().openTask(task);
    const QString promptTitle = DashboardTexts::statusPrompt(*task).value_or(StatusPrompt{}).title;
    const auto isPrompt = [&promptTitle](const QString &title) { return title == promptTitle; };
    waitFor(QStringLiteral("the start prompt"),
            [this, &isPrompt] { return alertTitled(m_window, isPrompt) != nullptr; });
    AlertView *prompt = alertTitled(m_window, isPrompt);
    if (!prompt->triggerAction(DashboardTexts::promptYes()))
        throw StepFailure(QStringLiteral("the prompt has no \"Yes\" button"));

    waitFor(QStringLiteral("task %1 to be In Progress").arg(id), [this, id, task, screensBefore] {
        const TaskPtr now = taskById(id);
        return task->currentStatus == TaskStatus::in_progress || (now && now->currentStatus == TaskStatus::in_progress)
            || navVC().screens().size() > screensBefore;
    });
    // A started task opens with its items once they are loaded.
    const bool opened = waitUntil([this, screensBefore] { return navVC().screens().size() > screensBefore; },
                                  std::min(m_options.stepTimeout, std::chrono::milliseconds(5000)));
    settle(500ms);
    const QString where = opened ? QStringLiteral("\"%1\" opened").arg(navVC().topScreen()->title())
                                 : QStringLiteral("the items screen did not open");
    record(QStringLiteral("start"),
           QStringLiteral("task %1 '%2' Acknowledged -> In Progress, %3").arg(id).arg(name, where));
}

ItemsVC &DemoTour::itemsScreen()
{
    auto *screen = qobject_cast<ItemsVC *>(navVC().topScreen());
    if (!screen)
        throw StepFailure(QStringLiteral("the task's items screen is not open"));
    return *screen;
}

void DemoTour::waitForItems()
{
    ItemsVC &screen = itemsScreen();
    waitFor(QStringLiteral("the items to load"), [&screen] {
        return !screen.refreshControl()->isRefreshing() && screen.refreshControl()->indicatorBand() == 0
            && !AlertPresenter::visibleAlert(&screen);
    });
}

void DemoTour::stepItems()
{
    m_currentStep = QStringLiteral("items");
    if (!qobject_cast<ItemsVC *>(navVC().topScreen())) {
        // The started task did not open: open an in-progress one.
        const TaskPtr task = findTask([](const Task &t) { return t.currentStatus == TaskStatus::in_progress; });
        if (!task)
            throw StepFailure(QStringLiteral("no task in progress to open"));
        dashboard().openTask(task);
        waitFor(QStringLiteral("the items screen"),
                [this] { return qobject_cast<ItemsVC *>(navVC().topScreen()) != nullptr; });
    }
    waitForItems();
    ItemsVC &screen = itemsScreen();
    settle(200ms);
    const ItemsTexts::Counts counts = ItemsTexts::counts(screen.viewModel()->task()->itemList.items);
    m_itemsTaskId = screen.viewModel()->task()->id;
    record(QStringLiteral("items"),
           QStringLiteral("\"%1\" opened: %2 items (%3 Completed, %4 Incidents, %5 Open)")
               .arg(screen.title())
               .arg(counts.total)
               .arg(counts.accepted)
               .arg(counts.rejected)
               .arg(counts.total - counts.accepted - counts.rejected));
}

void DemoTour::stepItemsFilter()
{
    m_currentStep = QStringLiteral("items-filter");
    ItemsVC &screen = itemsScreen();
    SegmentedControl *filter = screen.filterSegment();
    const int open = ItemStatuses::segmentIndex(ItemStatus::open);
    filter->segmentButton(open)->click();
    waitFor(QStringLiteral("the filter to show the open items"),
            [&screen] { return screen.viewModel()->task()->itemList.filterData.status == ItemStatus::open; });
    settle(200ms);
    record(QStringLiteral("items-filter"),
           QStringLiteral("filter \"%1\": %2 rows, header %3")
               .arg(filter->titleForSegment(open))
               .arg(screen.itemModel()->rowCount())
               .arg(screen.overviewLbl()->text()));
}

ItemActionVC &DemoTour::actionSheet()
{
    auto *sheet = qobject_cast<ItemActionVC *>(navVC().presentedScreen());
    if (!sheet)
        throw StepFailure(QStringLiteral("the item action sheet did not open"));
    return *sheet;
}

void DemoTour::type(QPlainTextEdit *field, const QString &text)
{
    field->window()->activateWindow();
    field->setFocus(Qt::OtherFocusReason);
    field->insertPlainText(text);
}

void DemoTour::finishItemAction(bool report, const QString &what,
                                const std::function<void(const QString &)> &recordResult)
{
    ItemActionVC &sheet = actionSheet();
    QPushButton *button = report ? sheet.reportButton() : sheet.completeButton();
    if (!button->isEnabled())
        throw StepFailure(QStringLiteral("the %1 button is not enabled").arg(button->text()));
    button->click();
    // Any of the item update results, for one item or several, done or failed.
    QStringList results;
    for (const bool success : {true, false}) {
        results << ItemsTexts::updateResult({QString()}, success).title
                << ItemsTexts::updateResult({QString(), QString()}, success).title;
    }
    // Kept in the outbox, a result is saved first and sent right after.
    results << ItemsTexts::savedResult({QString()}).title << ItemsTexts::savedResult({QString(), QString()}).title;
    const auto isResult = [&results](const QString &title) { return results.contains(title); };
    waitFor(QStringLiteral("the result of %1").arg(what),
            [this, &isResult] { return alertTitled(m_window, isResult) != nullptr; });
    settle(150ms);
    recordResult(alertTitled(m_window, isResult)->title());
    // The alert goes by itself, and the items load again.
    waitFor(QStringLiteral("the items to load again"), [this] {
        return !AlertPresenter::visibleAlert(m_window) && !itemsScreen().refreshControl()->isRefreshing()
            && itemsScreen().refreshControl()->indicatorBand() == 0;
    });
}

void DemoTour::stepItemComplete()
{
    m_currentStep = QStringLiteral("item-action");
    ItemsVC &screen = itemsScreen();
    // An open item the worker can complete without scanning its code.
    int row = -1;
    for (int i = 0; i < screen.itemModel()->rowCount() && row < 0; ++i) {
        const ItemPtr item = screen.itemModel()->item(i);
        if (item->status == ItemStatus::open && !item->qrCode)
            row = i;
    }
    if (row < 0) {
        skip(m_currentStep, QStringLiteral("no open item without a QR code"));
        return;
    }
    const QString name = screen.itemModel()->item(row)->name;
    ItemTableView *table = screen.tableView();
    table->scrollTo(table->model()->index(row, 0));
    if (!tap(table->viewport(), table->rowRect(row).center()))
        screen.actOnRow(row);
    ItemActionVC &sheet = actionSheet();
    type(sheet.noteField(), QStringLiteral("Pressure steady at 4.2 bar after the check."));
    sheet.addFileButton()->click();
    waitFor(QStringLiteral("the photo"), [&sheet] { return sheet.attachedPicture().has_value(); });
    sheet.noteField()->clearFocus();
    settle(200ms);
    record(
        QStringLiteral("item-action"),
        QStringLiteral("'%1' with a note and a photo, Complete %2")
            .arg(name, sheet.completeButton()->isEnabled() ? QStringLiteral("enabled") : QStringLiteral("disabled")));
    m_currentStep = QStringLiteral("item-complete");
    finishItemAction(false, QStringLiteral("completing '%1'").arg(name), [this, &name](const QString &result) {
        record(QStringLiteral("item-complete"), QStringLiteral("'%1' completed -> \"%2\"").arg(name, result));
    });
}

void DemoTour::stepItemsReport()
{
    m_currentStep = QStringLiteral("items-report");
    ItemsVC &screen = itemsScreen();
    if (screen.itemModel()->rowCount() < 2) {
        skip(m_currentStep, QStringLiteral("fewer than two open items left"));
        return;
    }
    screen.multipleSelectionBtn()->click();
    ItemTableView *table = screen.tableView();
    QStringList names;
    for (int row = 0; row < 2; ++row) {
        settle(50ms);
        tap(table->viewport(), table->rowRect(row).center());
        names.append(screen.itemModel()->item(row)->name);
    }
    settle(150ms);
    record(QStringLiteral("items-selection"),
           QStringLiteral("multiple selection: %1 chosen").arg(screen.viewModel()->selectedItems().size()));
    screen.saveBtn()->click();
    ItemActionVC &sheet = actionSheet();
    type(sheet.noteField(), QStringLiteral("Seals weeping, photos to follow."));
    sheet.noteField()->clearFocus();
    settle(150ms);
    finishItemAction(true, QStringLiteral("reporting two items"), [this, &names](const QString &result) {
        record(QStringLiteral("items-report"),
               QStringLiteral("%1 reported -> \"%2\"").arg(names.join(QStringLiteral(" and ")), result));
    });
}

void DemoTour::stepScan()
{
    m_currentStep = QStringLiteral("scan");
    ItemsVC &items = itemsScreen();
    // The demo camera shows the sticker of the first open item that has one.
    const QString code = DemoCamera::openCheckpoint(&navVC());
    if (code.isEmpty()) {
        skip(m_currentStep, QStringLiteral("no open item with a QR code"));
        return;
    }
    items.checkpointBtnPressed()->trigger();
    waitFor(QStringLiteral("the scanner"),
            [this] { return qobject_cast<QRScannerVC *>(navVC().topScreen()) != nullptr; });
    const QPointer<QRScannerVC> scanner = qobject_cast<QRScannerVC *>(navVC().topScreen());
    waitFor(QStringLiteral("the code to be read"),
            [&scanner] { return !scanner || scanner->state() == QRScannerVC::State::detected; });
    if (!scanner)
        throw StepFailure(QStringLiteral("the scanner closed before it read a code"));
    const QRect outline = scanner->qrCodeFrameView()->geometry();
    record(QStringLiteral("scan"),
           QStringLiteral("'%1' read: \"%2\", outline %3x%4 on the code")
               .arg(code, scanner->messageLabel()->text())
               .arg(outline.width())
               .arg(outline.height()));
    m_currentStep = QStringLiteral("scan-item");
    waitFor(QStringLiteral("the scanned item's action"), [this] { return navVC().presentedScreen() != nullptr; });
    ItemActionVC &sheet = actionSheet();
    const QString name = sheet.viewModel()->items().value(0) ? sheet.viewModel()->items().first()->name : QString();
    settle(200ms);
    record(
        QStringLiteral("scan-item"),
        QStringLiteral("'%1' opened by its code, Complete %2")
            .arg(name, sheet.completeButton()->isEnabled() ? QStringLiteral("enabled") : QStringLiteral("disabled")));
    m_currentStep = QStringLiteral("scan-complete");
    finishItemAction(false, QStringLiteral("completing '%1'").arg(name), [this, &name](const QString &result) {
        record(QStringLiteral("scan-complete"), QStringLiteral("'%1' completed -> \"%2\"").arg(name, result));
    });
}

CommentsVC &DemoTour::commentsScreen()
{
    auto *screen = qobject_cast<CommentsVC *>(navVC().topScreen());
    if (!screen)
        throw StepFailure(QStringLiteral("the comments screen is not open"));
    return *screen;
}

void DemoTour::sendComment(const QString &text, bool withPhoto)
{
    CommentsVC &screen = commentsScreen();
    CustomInputBar *bar = screen.inputBar();
    const int before = int(screen.viewModel()->comments().size());
    if (withPhoto) {
        bar->attachmentButton()->click();
        waitFor(QStringLiteral("the photo"), [bar] { return !bar->attachments().isEmpty(); });
    }
    type(bar->inputTextView(), text);
    settle(150ms);
    bar->sendButton()->click();
    waitFor(QStringLiteral("the comment to be in the thread"),
            [&screen, before] { return !screen.isFetching() && screen.viewModel()->comments().size() > before; });
    // The newest comment scrolls into sight, its picture arrives.
    waitFor(QStringLiteral("the thread to settle"), [&screen] {
        const int row = screen.threadModel()->lastCommentRow();
        const QModelIndex last = screen.threadModel()->index(row);
        return screen.refreshControl()->indicatorBand() == 0
            && (!last.data(CommentThreadModel::HasPictureRole).toBool()
                || !last.data(CommentThreadModel::ThumbnailRole).value<QImage>().isNull());
    });
    settle(300ms);
}

void DemoTour::stepComments()
{
    m_currentStep = QStringLiteral("comments");
    ItemsVC &items = itemsScreen();
    items.commentsButton()->trigger();
    waitFor(QStringLiteral("the comments screen"),
            [this] { return qobject_cast<CommentsVC *>(navVC().topScreen()) != nullptr; });
    CommentsVC &screen = commentsScreen();
    waitFor(QStringLiteral("the thread to load"),
            [&screen] { return !screen.isFetching() && screen.refreshControl()->indicatorBand() == 0; });
    settle(300ms);
    record(QStringLiteral("comments"),
           QStringLiteral("\"%1\": %2 comments over %3 days")
               .arg(navVC().navigationBar()->title())
               .arg(screen.viewModel()->comments().size())
               .arg(screen.viewModel()->numberOfSections()));

    m_currentStep = QStringLiteral("comment-text");
    sendComment(QStringLiteral("Two extinguishers need new tags, the rest is fine."), false);
    record(QStringLiteral("comment-text"),
           QStringLiteral("posted, %1 comments now").arg(screen.viewModel()->comments().size()));

    m_currentStep = QStringLiteral("comment-photo");
    sendComment(QStringLiteral("Gauge after the check."), true);
    record(QStringLiteral("comment-photo"), QStringLiteral("posted with a photo, thumbnail shown"));

    m_currentStep = QStringLiteral("comment-picture");
    CommentThreadView *table = screen.tableView();
    const QRect picture = table->pictureRect(screen.threadModel()->lastCommentRow());
    if (!tap(table->viewport(), picture.center()))
        throw StepFailure(QStringLiteral("the new comment's picture is out of sight"));
    auto *viewer = qobject_cast<ImageVC *>(navVC().presentedScreen());
    if (!viewer)
        throw StepFailure(QStringLiteral("the picture did not open"));
    settle(200ms);
    record(QStringLiteral("comment-picture"),
           QStringLiteral("picture opened full screen (%1x%2)")
               .arg(viewer->image().width())
               .arg(viewer->image().height()));
    viewer->closeButton()->click();
    navVC().pop();
    waitForItems();
}

QString DemoTour::blockOpenTask(const QString &sheetStep, const QString &reason)
{
    ItemsVC &screen = itemsScreen();
    const TaskPtr task = screen.viewModel()->task();
    screen.markAsBlockedBtn()->click();
    auto *sheet = qobject_cast<BlockTaskVC *>(navVC().presentedScreen());
    if (!sheet)
        throw StepFailure(QStringLiteral("the block task sheet did not open"));
    type(sheet->noteField(), reason);
    sheet->noteField()->clearFocus();
    settle(200ms);
    if (!sheetStep.isEmpty())
        record(sheetStep, QStringLiteral("reason typed for '%1'").arg(task->name));
    sheet->blockButton()->click();
    const QString blockedTitle = ItemsTexts::taskBlocked(QString()).title;
    const auto isBlocked = [&blockedTitle](const QString &title) { return title == blockedTitle; };
    waitFor(QStringLiteral("the blocked alert"),
            [this, &isBlocked] { return alertTitled(m_window, isBlocked) != nullptr; });
    settle(150ms);
    return oneLine(alertTitled(m_window, isBlocked)->message().trimmed());
}

void DemoTour::stepBlock()
{
    m_currentStep = QStringLiteral("block");
    const TaskPtr task = itemsScreen().viewModel()->task();
    const QString alert
        = blockOpenTask(QStringLiteral("block-sheet"), QStringLiteral("Access road flooded, site cannot be reached."));
    // The dashboard sends the change once the alert has gone.
    const qint64 id = task->id;
    waitFor(QStringLiteral("task %1 to be Blocked").arg(id), [this, id] {
        const TaskPtr now = taskById(id);
        return now && now->currentStatus == TaskStatus::blocked;
    });
    record(QStringLiteral("block"), QStringLiteral("task %1 In Progress -> Blocked: \"%2\"").arg(id).arg(alert));

    // Back to the dashboard, as the worker would.
    const int since = m_refreshesEnded;
    navVC().popToRoot();
    waitForRefreshAfter(since, QStringLiteral("the dashboard to reload after going back"));
}

QString DemoTour::actOnOpenItem(bool report, const QString &note, bool withPhoto, const QString &step)
{
    ItemsVC &screen = itemsScreen();
    int row = -1;
    for (int i = 0; i < screen.itemModel()->rowCount() && row < 0; ++i) {
        const ItemPtr item = screen.itemModel()->item(i);
        // A code must be scanned to complete its item, not to report it.
        if (item->status == ItemStatus::open && (report || !item->qrCode))
            row = i;
    }
    if (row < 0)
        throw StepFailure(QStringLiteral("no open item to act on"));
    const QString name = screen.itemModel()->item(row)->name;
    screen.tableView()->scrollTo(screen.tableView()->model()->index(row, 0));
    screen.actOnRow(row);
    ItemActionVC &sheet = actionSheet();
    type(sheet.noteField(), note);
    if (withPhoto) {
        sheet.addFileButton()->click();
        waitFor(QStringLiteral("the photo"), [&sheet] { return sheet.attachedPicture().has_value(); });
    }
    sheet.noteField()->clearFocus();
    settle(150ms);
    finishItemAction(report, QStringLiteral("'%1'").arg(name), [this, &step, &name, report](const QString &result) {
        record(step,
               QStringLiteral("'%1' %2 -> \"%3\"")
                   .arg(name, report ? QStringLiteral("reported") : QStringLiteral("completed with a photo"), result));
    });
    return name;
}

QString DemoTour::barState() const
{
    const NavigationBar *bar = navVC().navigationBar();
    return QStringLiteral("bar \"%1\", band \"%2\"").arg(bar->syncText(), bar->prompt());
}

void DemoTour::stepOffline()
{
    m_currentStep = QStringLiteral("offline");
    OutboxSender *outbox = navVC().outboxSender();
    if (!outbox) {
        skip(m_currentStep, QStringLiteral("the host has no offline store"));
        return;
    }
    // A task in progress, looked at once while online, as a worker does before
    // going down to the plant room: its checklist and thread are kept. It needs
    // an open item to complete (without a code) and another to report.
    const auto fits = [](const Task &t) {
        const QList<ItemPtr> &items = t.itemList.items;
        const auto open = std::count_if(items.cbegin(), items.cend(),
                                        [](const ItemPtr &i) { return i->status == ItemStatus::open; });
        return open >= 2 && std::any_of(items.cbegin(), items.cend(), [](const ItemPtr &i) {
                   return i->status == ItemStatus::open && !i->qrCode;
               });
    };
    TaskPtr task;
    QSet<qint64> tried;
    while (!task) {
        const TaskPtr next = findTask(
            [&tried](const Task &t) { return t.currentStatus == TaskStatus::in_progress && !tried.contains(t.id); });
        if (!next) {
            skip(m_currentStep, QStringLiteral("no task in progress with open items to complete and report"));
            return;
        }
        tried.insert(next->id);
        openChecklist(next);
        if (fits(*itemsScreen().viewModel()->task()))
            task = next;
        else
            backToDashboard();
    }
    openThread();
    navVC().pop();
    waitForItems();
    backToDashboard();

    m_currentStep = QStringLiteral("offline");
    m_window->setOffline(true);
    const int since = m_refreshesEnded;
    dashboard().pullToRefresh();
    waitForRefreshAfter(since, QStringLiteral("the dashboard to open from the cache"));
    if (AlertPresenter::visibleAlert(m_window))
        throw StepFailure(QStringLiteral("an alert instead of the kept dashboard"));
    settle(200ms);
    record(QStringLiteral("offline"),
           QStringLiteral("network off: %1 tasks from the cache, %2")
               .arg(dashboard().viewModel()->taskList().tasks.size())
               .arg(barState()));

    m_currentStep = QStringLiteral("offline-task");
    openChecklist(task);
    settle(200ms);
    record(QStringLiteral("offline-task"),
           QStringLiteral("'%1' from the cache: %2 items, %3")
               .arg(task->name)
               .arg(itemsScreen().itemModel()->rowCount())
               .arg(barState()));

    m_currentStep = QStringLiteral("offline-item-queued");
    const QString completed = actOnOpenItem(false, QStringLiteral("Pump guard refitted, photo attached."), true,
                                            QStringLiteral("offline-item-queued"));
    m_currentStep = QStringLiteral("offline-report-queued");
    const QString reported = actOnOpenItem(true, QStringLiteral("Drain blocked, water on the floor."), false,
                                           QStringLiteral("offline-report-queued"));

    m_currentStep = QStringLiteral("offline-comment-queued");
    const QString text = QStringLiteral("No signal down here: results will follow. (%1)").arg(task->id);
    itemsScreen().commentsButton()->trigger();
    waitFor(QStringLiteral("the comments screen"),
            [this] { return qobject_cast<CommentsVC *>(navVC().topScreen()) != nullptr; });
    sendComment(text, true);
    const QModelIndex last = commentsScreen().threadModel()->index(commentsScreen().threadModel()->lastCommentRow());
    record(QStringLiteral("offline-comment-queued"),
           QStringLiteral("comment with a photo: mark \"%1\", %2")
               .arg(SyncTexts::markText(last.data(CommentThreadModel::SyncMarkRole).value<SyncMark>()), barState()));
    navVC().pop();
    waitForItems();

    m_currentStep = QStringLiteral("offline-block-queued");
    blockOpenTask({}, QStringLiteral("Pump room flooded, work stopped."));
    waitFor(QStringLiteral("task %1 to be Blocked").arg(task->id), [this, id = task->id] {
        const TaskPtr now = taskById(id);
        return now && now->currentStatus == TaskStatus::blocked;
    });
    backToDashboard();
    // The blocked card, marked, in sight.
    for (TaskTableViewCell *row : dashboard().rows()) {
        const qsizetype at = std::find_if(row->tasks().cbegin(), row->tasks().cend(),
                                          [&task](const TaskPtr &t) { return t->id == task->id; })
            - row->tasks().cbegin();
        if (at < row->tasks().size()) {
            dashboard().refreshControl()->ensureWidgetVisible(row, 0, 120);
            row->scrollTo(row->model()->index(int(at), 0));
        }
    }
    settle(200ms);
    record(QStringLiteral("offline-block-queued"),
           QStringLiteral("'%1' Blocked on the device, card marked \"%2\", %3")
               .arg(task->name, SyncTexts::markText(outbox->pending().taskMarks().value(task->id, SyncMark::none)),
                    barState()));

    m_currentStep = QStringLiteral("offline-queued-list");
    navVC().navigationBar()->syncButton()->click();
    auto *list = qobject_cast<OutboxVC *>(navVC().topScreen());
    if (!list)
        throw StepFailure(QStringLiteral("the count did not open the list"));
    settle(200ms);
    const int queued = list->model()->rowCount();
    record(QStringLiteral("offline-queued-list"), QStringLiteral("%1 results waiting to be sent").arg(queued));
    navVC().pop();

    m_currentStep = QStringLiteral("synced");
    m_window->setOffline(false);
    waitFor(QStringLiteral("the outbox to be sent"),
            [outbox] { return outbox->isIdle() && outbox->counts() == OfflineStore::Counts{}; });
    waitFor(QStringLiteral("the dashboard to show the server's answer"),
            [this] { return dashboardIdle() && navVC().navigationBar()->prompt().isEmpty(); });
    settle(300ms);
    const TaskPtr after = taskById(task->id);
    record(QStringLiteral("synced"),
           QStringLiteral("network on: %1 results sent, '%2' is %3 on the server, %4")
               .arg(queued)
               .arg(task->name, after ? TaskStatuses::text(after->currentStatus) : QString(), barState()));

    // What the server holds now, read back through the session's view models.
    m_currentStep = QStringLiteral("synced-check");
    DashboardVM &viewModel = *dashboard().viewModel();
    std::optional<bool> itemsFetched;
    viewModel.fetchItems(after, [&itemsFetched](bool success) { itemsFetched = success; });
    CommentsVM thread(after, viewModel.networkManager(), viewModel.users());
    std::optional<bool> threadFetched;
    thread.fetchComments([&threadFetched](bool success) { threadFetched = success; });
    waitFor(QStringLiteral("the task's items and thread from the server"),
            [&itemsFetched, &threadFetched] { return itemsFetched && threadFetched; });
    const auto statusOf = [&after](const QString &name) {
        for (const ItemPtr &item : after->itemList.items) {
            if (item->name == name)
                return ItemStatuses::rawValue(item->status);
        }
        return QString();
    };
    const auto copies = std::count_if(thread.comments().cbegin(), thread.comments().cend(),
                                      [&text](const CommentPtr &c) { return c->text.value_or(QString()) == text; });
    if (copies != 1)
        throw StepFailure(QStringLiteral("the comment is on the server %1 times").arg(copies));
    record(QStringLiteral("synced-check"),
           QStringLiteral("the server holds each result once: '%1' %2, '%3' %4, the comment once, '%5' %6")
               .arg(completed, statusOf(completed), reported, statusOf(reported), after->name,
                    TaskStatuses::text(after->currentStatus)));
}

void DemoTour::stepFilter()
{
    m_currentStep = QStringLiteral("filter");
    const QList<TaskPtr> before = dashboard().viewModel()->taskList().tasks;
    // The priority most tasks have, among those that not every task has: the
    // list narrows without emptying.
    std::optional<TaskPriority> priority;
    qsizetype most = 0;
    for (const TaskPriority candidate : TaskPriorities::allCases()) {
        const auto count = std::count_if(before.begin(), before.end(),
                                         [candidate](const TaskPtr &task) { return task->priority == candidate; });
        if (count > most && count < before.size()) {
            most = count;
            priority = candidate;
        }
    }
    if (!priority) {
        skip(m_currentStep, QStringLiteral("the tasks on the dashboard do not differ in priority"));
        return;
    }

    // The bar's filter button, as the worker taps it.
    auto *filterButton = navVC().navigationBar()->findChild<QToolButton *>(QStringLiteral("filterButton"));
    if (!filterButton)
        throw StepFailure(QStringLiteral("the navigation bar has no filter button"));
    filterButton->click();
    waitFor(QStringLiteral("the filter screen"),
            [this] { return qobject_cast<FilterVC *>(navVC().topScreen()) != nullptr; });
    auto *filter = qobject_cast<FilterVC *>(navVC().topScreen());
    const FilterVM &choices = *filter->viewModel();
    for (const auto &[control, index] :
         {std::pair{filter->prioritySegment(), FilterVM::priorityIndex(*priority)},
          std::pair{filter->sortKeySegment(), choices.sortKeyIndex(SortKey::name)},
          std::pair{filter->sortOrderSegment(), choices.sortOrderIndex(SortOrder::ascending)}}) {
        QPushButton *segment = control->segmentButton(index);
        if (!segment)
            throw StepFailure(QStringLiteral("%1 has no segment %2").arg(control->objectName()).arg(index));
        segment->click();
    }
    const QString priorityText = TaskPriorities::rawValue(*priority);
    settle(250ms);
    record(QStringLiteral("filter"),
           QStringLiteral("priority %1, sorted by %2 %3, created %4 to %5, category %6")
               .arg(priorityText,
                    filter->sortKeySegment()->titleForSegment(filter->sortKeySegment()->selectedSegmentIndex()),
                    filter->sortOrderSegment()->titleForSegment(filter->sortOrderSegment()->selectedSegmentIndex()),
                    filter->dateStart()->text(), filter->dateEnd()->text(),
                    filter->categoryTextField()->text().isEmpty() ? filter->categoryTextField()->placeholderText()
                                                                  : filter->categoryTextField()->text()));

    const int since = m_refreshesEnded;
    filter->applyButton()->click();
    waitFor(QStringLiteral("the filter screen to close"),
            [this] { return navVC().topScreen() == navVC().dashboard(); });
    waitForRefreshAfter(since, QStringLiteral("the dashboard to fetch with the new filter"));
    const auto narrowed = [this, priority] {
        const QList<TaskPtr> &tasks = dashboard().viewModel()->taskList().tasks;
        return !tasks.isEmpty() && std::all_of(tasks.begin(), tasks.end(), [priority](const TaskPtr &task) {
            return task->priority == *priority;
        });
    };
    waitFor(QStringLiteral("only %1 tasks on the dashboard").arg(priorityText),
            [&] { return narrowed() && dashboardIdle(); });
    for (const TaskSection &section : dashboard().viewModel()->sections()) {
        for (qsizetype i = 1; i < section.tasks.size(); ++i) {
            if (section.tasks.at(i - 1)->name.toLower() > section.tasks.at(i)->name.toLower())
                throw StepFailure(QStringLiteral("'%1' shows before '%2'")
                                      .arg(section.tasks.at(i - 1)->name, section.tasks.at(i)->name));
        }
    }
    settle(300ms);
    record(QStringLiteral("filter-applied"),
           QStringLiteral("%1 of %2 tasks, all %3, by name A to Z (%4)")
               .arg(dashboard().viewModel()->taskList().tasks.size())
               .arg(before.size())
               .arg(priorityText, sectionsText()));
}

void DemoTour::stepHostPanel()
{
    m_currentStep = QStringLiteral("host-panel");
    DashboardHeaderView *header = dashboard().headerView();
    if (!header || !header->panelButton())
        throw StepFailure(QStringLiteral("the dashboard has no panel button"));
    HostPanel *panel = m_window->hostPanel();
    m_lastSwipe.reset();
    header->panelButton()->click();
    waitFor(QStringLiteral("the host panel to slide in"),
            [this, panel] { return m_lastSwipe.has_value() && panel->isShown() && panel->isSettled(); });
    settle(100ms);
    record(QStringLiteral("host-panel"),
           QStringLiteral("didSwipe(isShown: %1) from the dashboard's panel button -> host panel shown for %2")
               .arg(*m_lastSwipe ? QStringLiteral("true") : QStringLiteral("false"), panel->userName()));
    m_window->closeHostPanel();
    waitFor(QStringLiteral("the host panel to slide out"), [panel] { return !panel->isShown() && panel->isSettled(); });
}

void DemoTour::stepTaskEvent()
{
    m_currentStep = QStringLiteral("task-event");
    m_window->openTaskEventSheet();
    TaskEventSheet *sheet = m_window->taskEventSheet();
    if (sheet->tasks().isEmpty())
        throw StepFailure(QStringLiteral("the host has no task to post an event about"));

    // Another assigned task of the worker, else the first task offered.
    HostSetup::TaskChoice choice = sheet->tasks().constFirst();
    const TaskPtr assigned = findTask(
        [this](const Task &t) { return t.currentStatus == TaskStatus::assigned && t.id != m_acknowledgedTaskId; });
    for (const HostSetup::TaskChoice &candidate : sheet->tasks()) {
        if (assigned && candidate.id == assigned->id)
            choice = candidate;
    }
    sheet->selectTask(choice.id);
    sheet->selectKind(kTaskEventKind);
    settle(200ms);
    record(QStringLiteral("task-event-sheet"),
           QStringLiteral("the host's sheet offers %1 tasks; picked #%2 '%3', %4")
               .arg(sheet->tasks().size())
               .arg(choice.id)
               .arg(choice.name, sheet->selectedKind()));

    const int since = m_refreshesEnded;
    sheet->postButton()->click();
    const QString eventTitle = TaskUpdateEvent().getAlertMessage().title;
    const auto isEventAlert = [&eventTitle](const QString &title) { return title == eventTitle; };
    waitFor(QStringLiteral("the event alert"),
            [this, &isEventAlert] { return alertTitled(m_window, isEventAlert) != nullptr; });
    AlertView *alert = alertTitled(m_window, isEventAlert);
    // The alert goes by itself after a second: the picture is taken at once.
    record(QStringLiteral("task-event"),
           QStringLiteral("%1 for task %2 '%3' -> alert \"%4\": %5")
               .arg(kTaskEventKind)
               .arg(choice.id)
               .arg(choice.name, alert->title(), oneLine(alert->message())));
    waitForRefreshAfter(since, QStringLiteral("the alert to close and the dashboard to reload"));
}

void DemoTour::stepEmergency()
{
    m_currentStep = QStringLiteral("emergency");
    NavigationBar *bar = navVC().navigationBar();
    const QColor before = bar->barColor();
    m_window->hostBar()->emergencyButton()->click();
    waitFor(QStringLiteral("the navigation bar to turn red"), [bar, before] {
        const QColor now = bar->barColor();
        return now != before && now.red() > 200 && now.green() < 110 && now.blue() < 110;
    });
    settle(150ms);
    record(QStringLiteral("emergency"),
           QStringLiteral("EmergencyUpdateEvent true -> navigation bar %1 (was %2)")
               .arg(bar->barColor().name(), before.name()));
}

// Helpers --------------------------------------------------------------------

bool DemoTour::tap(QWidget *widget, QPoint position)
{
    if (!widget->rect().contains(position))
        return false;
    const QPointF local(position);
    const QPointF global(widget->mapToGlobal(position));
    QMouseEvent press(QEvent::MouseButtonPress, local, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QMouseEvent release(QEvent::MouseButtonRelease, local, global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &press);
    QCoreApplication::sendEvent(widget, &release);
    return true;
}

void DemoTour::waitFor(const QString &what, const std::function<bool()> &condition)
{
    const auto sessionLost = [this] { return m_signedIn && m_window && !m_window->isSignedIn(); };
    const bool met = waitUntil([&] { return sessionLost() || condition(); }, m_options.stepTimeout);
    if (sessionLost()) {
        throw StepFailure(QStringLiteral("the session ended while waiting for %1 (the sign-in screen says: \"%2\")")
                              .arg(what, m_window->signInScreen()->message()));
    }
    if (!met)
        throw StepFailure(QStringLiteral("gave up waiting for %1 after %2 s")
                              .arg(what)
                              .arg(double(m_options.stepTimeout.count()) / 1000.0));
}

bool DemoTour::waitUntil(const std::function<bool()> &condition, std::chrono::milliseconds timeout)
{
    constexpr int sliceMs = 10;
    QElapsedTimer timer;
    timer.start();
    const qint64 maxRounds = timeout.count() / sliceMs + 100;
    for (qint64 round = 0; round < maxRounds; ++round) {
        if (condition())
            return true;
        if (timer.elapsed() >= timeout.count() || !m_window)
            return false;
        QEventLoop loop;
        QTimer::singleShot(sliceMs, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return condition();
}

void DemoTour::settle(std::chrono::milliseconds duration)
{
    (void)waitUntil([] { return false; }, duration);
}

void DemoTour::record(const QString &name, const QString &line)
{
    ++m_step;
    const QString number = QStringLiteral("%1").arg(m_step, 2, 10, QLatin1Char('0'));
    const QString file = m_dir.filePath(number + QLatin1Char('-') + name + QStringLiteral(".png"));
    const QPixmap picture = m_window->grab();
    if (picture.isNull() || !picture.save(file, "PNG"))
        throw StepFailure(QStringLiteral("could not write %1").arg(file));
    const QString text = number + QLatin1Char(' ') + name + QStringLiteral(": ") + line;
    m_summary.append(text);
    m_summaryFile.write((text + QLatin1Char('\n')).toUtf8());
    m_summaryFile.flush();
    std::printf("%s\n", qPrintable(text));
    std::fflush(stdout);
}

void DemoTour::skip(const QString &name, const QString &reason)
{
    if (m_options.strict)
        throw StepFailure(reason);
    const QString text = QStringLiteral("-- %1: skipped, %2").arg(name, reason);
    m_summary.append(text);
    m_summaryFile.write((text + QLatin1Char('\n')).toUtf8());
    std::printf("%s\n", qPrintable(text));
}

RavelinNavVC &DemoTour::navVC() const
{
    RavelinNavVC *navVC = m_window ? m_window->navVC() : nullptr;
    if (!navVC)
        throw StepFailure(QStringLiteral("the session ended"));
    return *navVC;
}

DashboardVC &DemoTour::dashboard() const
{
    DashboardVC *screen = navVC().dashboard();
    if (!screen)
        throw StepFailure(QStringLiteral("the task client has no dashboard"));
    return *screen;
}

bool DemoTour::dashboardIdle() const
{
    const DashboardVC &screen = dashboard();
    return screen.refreshControl() && !screen.refreshControl()->isRefreshing()
        && AlertPresenter::visibleAlert(m_window) == nullptr;
}

void DemoTour::waitForRefreshAfter(int since, const QString &what)
{
    waitFor(what, [this, since] { return m_refreshesEnded > since && dashboardIdle(); });
}

void DemoTour::watchRefreshes()
{
    if (m_watchingRefreshes)
        return;
    RefreshableScrollArea *control = dashboard().refreshControl();
    if (!control)
        throw StepFailure(QStringLiteral("the dashboard has no refresh control"));
    m_watchingRefreshes = true;
    m_connections.append(
        QObject::connect(control, &RefreshableScrollArea::refreshingChanged, control, [this](bool refreshing) {
            if (!refreshing)
                ++m_refreshesEnded;
        }));
}

TaskPtr DemoTour::findTask(const std::function<bool(const Task &)> &matches) const
{
    // In the order the dashboard shows them.
    for (const TaskSection &section : dashboard().viewModel()->sections()) {
        for (const TaskPtr &task : section.tasks) {
            if (task && matches(*task))
                return task;
        }
    }
    return nullptr;
}

TaskPtr DemoTour::taskById(qint64 id) const
{
    for (const TaskPtr &task : dashboard().viewModel()->taskList().tasks) {
        if (task && task->id == id)
            return task;
    }
    return nullptr;
}

QString DemoTour::sectionsText() const
{
    QStringList parts;
    for (const TaskSection &section : dashboard().viewModel()->sections()) {
        parts.append(QStringLiteral("%1 %2")
                         .arg(section.status ? statusText(*section.status) : DashboardTexts::unknownStatus)
                         .arg(section.tasks.size()));
    }
    return parts.join(QStringLiteral(", "));
}

} // namespace ravelin
