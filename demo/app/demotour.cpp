#include "demo/app/demotour.h"

#include "demo/app/demohostwindow.h"
#include "demo/app/hostbar.h"
#include "demo/app/hostpanel.h"
#include "demo/app/signinscreen.h"
#include "demo/app/taskeventsheet.h"
#include "demo/app/workerrow.h"
#include "host/navigationbar.h"
#include "host/ravelinnavvc.h"
#include "host/screen.h"
#include "host/taskupdateevent.h"
#include "tasks/dashboardheaderview.h"
#include "tasks/dashboardtexts.h"
#include "tasks/dashboardvc.h"
#include "tasks/dashboardvm.h"
#include "tasks/taskcard.h"
#include "tasks/taskstrip.h"
#include "views/alertpresenter.h"
#include "views/alertview.h"
#include "views/refreshablescrollarea.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QPixmap>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>

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
        m_connections.append(QObject::connect(window, &DemoHostWindow::swiped, window,
                                              [this](bool isShown) { m_lastSwipe = isShown; }));
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
        stepAcknowledge();
        stepStart();
        stepHostPanel();
        stepTaskEvent();
        stepEmergency();
    } catch (const StepFailure &failure) {
        m_failure = QStringLiteral("Tour failed at step \"%1\": %2").arg(m_currentStep, QString::fromStdString(failure.what()));
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
    record(QStringLiteral("sign-in"), QStringLiteral("%1 field workers offered, signing in as %2 (id %3) at https://%4")
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
        if (alertTitled(m_window, [](const QString &title) { return title == DashboardTexts::fetchFailureTitle; }))
            throw StepFailure(QStringLiteral("the dashboard could not fetch the tasks"));
        return screen.viewModel() && dashboardIdle() && !screen.viewModel()->taskList().tasks.isEmpty()
               && !screen.rows().isEmpty();
    });
    watchRefreshes();
    settle(300ms);
    const DashboardVM &viewModel = *dashboard().viewModel();
    record(QStringLiteral("dashboard"), QStringLiteral("%1, %2 tasks in %3 sections (%4)")
                                            .arg(m_window->session() ? m_window->session()->userName : QString())
                                            .arg(viewModel.taskList().tasks.size())
                                            .arg(viewModel.sections().size())
                                            .arg(sectionsText()));
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
    QPushButton *button = nullptr;
    for (TaskTableViewCell *row : dashboard().rows()) {
        for (TaskCollectionViewCell *cell : row->cells()) {
            if (cell->currentTask() && cell->currentTask()->id == id)
                button = cell->acknowledgeBtn();
        }
    }
    if (button && !button->isHidden())
        button->click();
    else
        dashboard().didTapAcknowledge(task);

    const auto isPrompt = [](const QString &title) { return title.startsWith(QLatin1String("Acknowledge task")); };
    waitFor(QStringLiteral("the acknowledge prompt"), [this, &isPrompt] { return alertTitled(m_window, isPrompt) != nullptr; });
    AlertView *prompt = alertTitled(m_window, isPrompt);
    settle(100ms);
    record(QStringLiteral("acknowledge-prompt"),
           QStringLiteral("\"%1\" with %2").arg(prompt->title(), prompt->actionTitles().join(QStringLiteral(" / "))));

    const int since = m_refreshesEnded;
    prompt = alertTitled(m_window, isPrompt);
    if (!prompt || !prompt->triggerAction(DashboardTexts::promptYes))
        throw StepFailure(QStringLiteral("the prompt has no \"Yes\" button"));
    waitFor(QStringLiteral("task %1 to be Acknowledged").arg(id), [this, id] {
        const TaskPtr now = taskById(id);
        return now && now->currentStatus == TaskStatus::acknowledged;
    });
    waitForRefreshAfter(since, QStringLiteral("the dashboard to reload after the change"));
    m_acknowledgedTaskId = id;
    settle(250ms);
    record(QStringLiteral("acknowledge"), QStringLiteral("task %1 '%2' Assigned -> Acknowledged, %3 sections")
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
    const auto isPrompt = [](const QString &title) { return title.startsWith(QLatin1String("Start task")); };
    waitFor(QStringLiteral("the start prompt"), [this, &isPrompt] { return alertTitled(m_window, isPrompt) != nullptr; });
    AlertView *prompt = alertTitled(m_window, isPrompt);
    if (!prompt->triggerAction(DashboardTexts::promptYes))
        throw StepFailure(QStringLiteral("the prompt has no \"Yes\" button"));

    waitFor(QStringLiteral("task %1 to be In Progress").arg(id), [this, id, task, screensBefore] {
        const TaskPtr now = taskById(id);
        return task->currentStatus == TaskStatus::in_progress
               || (now && now->currentStatus == TaskStatus::in_progress) || navVC().screens().size() > screensBefore;
    });
    // A started task opens with its items once they are loaded.
    const bool opened = waitUntil([this, screensBefore] { return navVC().screens().size() > screensBefore; },
                                  std::min(m_options.stepTimeout, std::chrono::milliseconds(5000)));
    settle(500ms);
    const QString where = opened ? QStringLiteral("\"%1\" opened").arg(navVC().topScreen()->title())
                                 : QStringLiteral("the items screen did not open");
    record(QStringLiteral("start"), QStringLiteral("task %1 '%2' Acknowledged -> In Progress, %3").arg(id).arg(name, where));

    if (navVC().screens().size() > 1) {
        // Back to the dashboard, as the worker would.
        const int since = m_refreshesEnded;
        navVC().popToRoot();
        waitForRefreshAfter(since, QStringLiteral("the dashboard to reload after going back"));
    }
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
    record(QStringLiteral("host-panel"), QStringLiteral("didSwipe(isShown: %1) from the dashboard's panel button -> host panel shown for %2")
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
    const TaskPtr assigned = findTask([this](const Task &t) {
        return t.currentStatus == TaskStatus::assigned && t.id != m_acknowledgedTaskId;
    });
    for (const HostSetup::TaskChoice &candidate : sheet->tasks()) {
        if (assigned && candidate.id == assigned->id)
            choice = candidate;
    }
    sheet->selectTask(choice.id);
    sheet->selectKind(kTaskEventKind);
    settle(200ms);
    record(QStringLiteral("task-event-sheet"), QStringLiteral("the host's sheet offers %1 tasks; picked #%2 '%3', %4")
                                                   .arg(sheet->tasks().size())
                                                   .arg(choice.id)
                                                   .arg(choice.name, sheet->selectedKind()));

    const int since = m_refreshesEnded;
    sheet->postButton()->click();
    const auto isEventAlert = [](const QString &title) { return title == QLatin1String("Task Event Update"); };
    waitFor(QStringLiteral("the event alert"), [this, &isEventAlert] { return alertTitled(m_window, isEventAlert) != nullptr; });
    AlertView *alert = alertTitled(m_window, isEventAlert);
    // The alert goes by itself after a second: the picture is taken at once.
    record(QStringLiteral("task-event"), QStringLiteral("%1 for task %2 '%3' -> alert \"%4\": %5")
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
    record(QStringLiteral("emergency"), QStringLiteral("EmergencyUpdateEvent true -> navigation bar %1 (was %2)")
                                            .arg(bar->barColor().name(), before.name()));
}

// Helpers --------------------------------------------------------------------

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
    m_connections.append(QObject::connect(control, &RefreshableScrollArea::refreshingChanged, control, [this](bool refreshing) {
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
