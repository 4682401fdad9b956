#include "api/memoryofflinestore.h"
#include "demo/app/demooptions.h"
#include "demo/app/demotour.h"
#include "demo/app/hostbar.h"
#include "demo/app/hostbrand.h"
#include "demo/app/hostpanel.h"
#include "demo/app/scenepicker.h"
#include "demo/app/signinanswer.h"
#include "demo/app/signinscreen.h"
#include "demo/app/taskeventsheet.h"
#include "demorig.h"
#include "host/ravelinnavvc.h"
#include "host/taskupdateevent.h"
#include "support/testserver.h"
#include "tasks/dashboardheaderview.h"
#include "tasks/dashboardvc.h"
#include "tasks/dashboardvm.h"
#include "views/refreshablescrollarea.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include <optional>

using namespace ravelin;

Q_DECLARE_METATYPE(ravelin::DemoOptions::Mode)

namespace {

constexpr int kTimeoutMs = 15000;

bool isRed(const QColor &color)
{
    const int hue = color.hsvHue();
    return (hue <= 10 || hue >= 350) && color.hsvSaturation() > 150 && color.value() > 150;
}

} // namespace

class TestDemoHost : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<RavelinNavVC *>(); }
    void init();
    void cleanup();

    void signInStoresTheSession();
    void refusedSignInStaysOnSignIn();
    void panelFollowsDidSwipe();
    void uploadImageRefusedOutsideTheFolder();
    void emergencyButtonToggles();
    void taskEventCarriesItsType();
    void sessionExpiryReturnsToSignIn();
    void tourWritesPicturesAndSummary();
    void tourStopsWhenTheSessionEnds();
    void signInRefusalsDoNotDecode_data();
    void signInRefusalsDoNotDecode();
    void initials_data();
    void initials();
    void options_data();
    void options();

private:
    // Signs the worker in from the sign-in screen; with `dashboard`, also waits
    // until the dashboard shows, observes the host's notifications and is done with its first fetch.
    RavelinNavVC *signIn(qint64 workerId, bool dashboard = false);
    // GET from the demo server, trusting exactly its certificate: status and body.
    std::pair<int, QByteArray> download(const QString &path, const QByteArray &token);

    std::unique_ptr<test::DemoRig> m_rig;
    std::unique_ptr<MemoryOfflineStore> m_store;
    std::unique_ptr<DemoHostWindow> m_window;
    ScenePicker m_picker;
};

void TestDemoHost::init()
{
    m_rig = std::make_unique<test::DemoRig>();
    QVERIFY(m_rig->server.start(0));
    // With an offline store, as the demo runs: the tour has its offline round.
    m_store = std::make_unique<MemoryOfflineStore>();
    DemoHostWindow::Environment environment = m_rig->environment();
    environment.imagePicker = &m_picker;
    environment.offlineStore = m_store.get();
    m_window = std::make_unique<DemoHostWindow>(m_rig->setup(), environment);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void TestDemoHost::cleanup()
{
    m_window.reset();
    m_store.reset();
    m_rig.reset();
}

RavelinNavVC *TestDemoHost::signIn(qint64 workerId, bool dashboard)
{
    QSignalSpy started(m_window.get(), &DemoHostWindow::sessionStarted);
    if (!m_window->signInScreen()->selectWorker(workerId))
        return nullptr;
    m_window->signInScreen()->signInButton()->click();
    if (started.isEmpty() && !started.wait(kTimeoutMs))
        return nullptr;
    RavelinNavVC *navVC = m_window->navVC();
    if (dashboard) {
        const bool ready = QTest::qWaitFor(
            [&] {
                DashboardVC *vc = navVC->dashboard();
                return vc && vc->headerView() && m_rig->center.hasObserver(vc, NotificationNames::emergencyUpdate)
                    && vc->refreshControl() && !vc->refreshControl()->isRefreshing()
                    && !vc->viewModel()->taskList().tasks.isEmpty();
            },
            kTimeoutMs);
        return ready ? navVC : nullptr;
    }
    return navVC;
}

std::pair<int, QByteArray> TestDemoHost::download(const QString &path, const QByteArray &token)
{
    const auto answer = test::exchange(m_rig->server.baseUrl(), m_rig->server.certificatePem(), "GET", path, {},
                                       {{"Authorization", "Bearer " + token}});
    return {answer.status, answer.body};
}

void TestDemoHost::signInStoresTheSession()
{
    // How the library stores the session it is handed: tst_ravelinnavvc storesSessionDataOnLoad. That the
    // session handed over opens the server: every signIn(id, true) below waits for the worker's tasks; the worker's
    // id and the window as the host's delegate: sessionExpiryReturnsToSignIn.
    RavelinNavVC *navVC = signIn(3);
    QVERIFY(navVC);
    QVERIFY(navVC->isVisible());
    QVERIFY(!m_window->signInScreen()->isVisible());
    QVERIFY(navVC->assetsList.has_value());
    for (const DemoUser &user : m_rig->server.users())
        QCOMPARE(navVC->assetsList->value(user.id), (QStringList{user.name, user.icon}));
    QCOMPARE(m_window->hostPanel()->userName(), QStringLiteral("Chris Okafor"));
}

void TestDemoHost::refusedSignInStaysOnSignIn()
{
    // The dispatch desk is a person of the deployment who may not sign in.
    const auto desk = std::find_if(m_rig->data.users.cbegin(), m_rig->data.users.cend(),
                                   [](const DemoUser &u) { return !u.canSignIn; });
    QVERIFY(desk != m_rig->data.users.cend());
    QSignalSpy failed(m_window.get(), &DemoHostWindow::signInFailed);
    m_window->signIn(desk->id);
    QVERIFY(m_window->signInScreen()->isBusy());
    QVERIFY(failed.wait(kTimeoutMs));
    QVERIFY(!m_window->navVC() && !m_window->isSignedIn());
    QVERIFY(!m_window->signInScreen()->isBusy());
    QVERIFY(m_window->signInScreen()->message().contains(failed.first().first().toString()));
}

void TestDemoHost::panelFollowsDidSwipe()
{
    // What the dashboard's button passes: tst_dashboardvc panelButtonAndSwipes; opened by it and closed by the
    // host: the tour's host-panel step.
    RavelinNavVC *navVC = signIn(2, true);
    QVERIFY(navVC);
    QToolButton *panelButton = navVC->dashboard()->headerView()->panelButton();
    HostPanel *panel = m_window->hostPanel();
    QVERIFY(!panel->isShown());

    panelButton->click();
    QVERIFY(panel->isShown());
    panelButton->click();
    QVERIFY(!panel->isShown());
    QTRY_VERIFY_WITH_TIMEOUT(panel->isSettled() && !panel->isVisible(), kTimeoutMs);

    // Closed by the host itself: the dashboard's button opens it again on its next tap.
    panelButton->click();
    QVERIFY(panel->isShown());
    emit panel->closeRequested();
    QVERIFY(!panel->isShown());
    panelButton->click();
    QVERIFY(panel->isShown());
}

void TestDemoHost::uploadImageRefusedOutsideTheFolder()
{
    // A stored picture comes back from the server in the tour (its comment-picture
    // step opens the uploaded photo); a name that leaves the folder is refused.
    QVERIFY(signIn(1));
    std::optional<std::pair<bool, std::optional<QString>>> answer;
    m_window->uploadImage(
        QImage(8, 8, QImage::Format_RGB32), QStringLiteral("../escape.jpg"),
        [&answer](bool success, std::optional<QString> path) { answer = std::make_pair(success, path); });
    QTRY_VERIFY_WITH_TIMEOUT(answer.has_value(), kTimeoutMs);
    QCOMPARE(*answer, std::make_pair(false, std::optional<QString>()));
}

void TestDemoHost::emergencyButtonToggles()
{
    // What the bar does with the notification: tst_ravelinnavvc emergencyColoursTheBar; the red bar end to end: the
    // tour.
    QVERIFY(signIn(1, true));
    QList<QVariant> posted;
    QObject observer;
    m_rig->center.addObserver(&observer, NotificationNames::emergencyUpdate,
                              [&posted](const QVariant &o) { posted.append(o); });
    m_window->hostBar()->emergencyButton()->click();
    m_window->hostBar()->emergencyButton()->click();
    QCOMPARE(posted, (QList<QVariant>{QVariant(true), QVariant(false)}));
}

void TestDemoHost::taskEventCarriesItsType()
{
    // Each kind's type: tst_ravelinnavvc typeTextsAndAlert, through which the sheet reads its kinds; the alert and
    // the dashboard's reload that follow: the tour's task-event step.
    QVERIFY(signIn(2));
    QList<TaskUpdateEventPtr> events;
    QObject observer;
    m_rig->center.addObserver(&observer, NotificationNames::taskEvent,
                              [&events](const QVariant &o) { events.append(o.value<TaskUpdateEventPtr>()); });

    // A task of another worker: the menu offers every task of the deployment, the worker's own first.
    const DemoTask &task = m_rig->data.tasks.at(3);
    m_window->openTaskEventSheet();
    TaskEventSheet *sheet = m_window->taskEventSheet();
    QVERIFY(sheet->isOpen());
    QCOMPARE(sheet->tasks().size(), m_rig->data.tasks.size());
    QCOMPARE(sheet->tasks().constFirst().assignedUserId, std::optional<qint64>(2));
    QVERIFY(sheet->selectTask(task.id) && sheet->selectKind(QStringLiteral("task-unassigned")));
    sheet->postButton()->click();

    QVERIFY(!sheet->isOpen());
    QCOMPARE(events.size(), 1);
    QVERIFY(events.first());
    QCOMPARE(events.first()->id, task.id);
    QCOMPARE(events.first()->name, task.name);
    QCOMPARE(events.first()->type, TaskUpdateEventType::kUnassigned);
    QCOMPARE(events.first()->assetId, std::optional<qint64>(2));
}

void TestDemoHost::sessionExpiryReturnsToSignIn()
{
    // The library tells the host through the same call the host may make itself, as it does below.
    QPointer<RavelinNavVC> first = signIn(1, true);
    QVERIFY(first);
    m_window->hostBar()->emergencyButton()->click();
    QSignalSpy returned(m_window.get(), &DemoHostWindow::returnedToSignIn);
    // Without stored session data the library's next request tells the host.
    m_rig->settings.remove(QStringLiteral("quorApiData"));
    first->dashboard()->pullToRefresh();
    QTRY_VERIFY_WITH_TIMEOUT(!returned.isEmpty(), kTimeoutMs);
    QCOMPARE(returned.size(), 1);
    QVERIFY(m_window->signInScreen()->isVisible());
    QVERIFY(!m_window->signInScreen()->message().isEmpty());
    QVERIFY(!m_window->isSignedIn() && !m_window->navVC());
    QVERIFY(!m_window->hostBar()->isEmergency());
    QTRY_VERIFY_WITH_TIMEOUT(first.isNull(), kTimeoutMs);

    // A second expiry of the same session changes nothing; the next worker signs in afresh.
    m_window->sessionExpired();
    QPointer<RavelinNavVC> second = signIn(3);
    QVERIFY(second);
    QCOMPARE(second->currentUserId, std::optional<qint64>(3));
    QCOMPARE(returned.size(), 1);
}

void TestDemoHost::tourWritesPicturesAndSummary()
{
    QTemporaryDir out;
    QVERIFY(out.isValid());
    DemoTour tour(m_window.get(), DemoTour::Options{out.path(), std::chrono::milliseconds(kTimeoutMs), 3, true});
    QVERIFY2(tour.run() == 0, qPrintable(tour.failure()));

    const QDir dir(out.path());
    const QStringList pictures = dir.entryList({QStringLiteral("*.png")}, QDir::Files, QDir::Name);
    QCOMPARE(pictures.size(), 35);
    QCOMPARE(pictures.first(), QStringLiteral("01-sign-in.png"));
    QCOMPARE(pictures.last(), QStringLiteral("35-emergency.png"));
    for (const QString &name : pictures) {
        const QImage picture(dir.filePath(name));
        QCOMPARE(picture.size(), m_window->size() * picture.devicePixelRatio());
    }
    // The emergency step's picture has the red bar at its top.
    const QImage last(dir.filePath(pictures.last()));
    QVERIFY(isRed(last.pixelColor(last.width() / 2, 4)));

    QFile summary(dir.filePath(QStringLiteral("summary.txt")));
    QVERIFY(summary.open(QIODevice::ReadOnly | QIODevice::Text));
    const QStringList lines = QString::fromUtf8(summary.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines, tour.summary());
    QCOMPARE(lines.size(), pictures.size());
    QVERIFY(lines.at(0).startsWith(QStringLiteral("01 sign-in: "))
            && lines.at(0).contains(QStringLiteral("Chris Okafor")));
    QVERIFY2(lines.at(8).contains(QStringLiteral("\"Item Status Saved\"")), qPrintable(lines.at(8)));
    // The steps check what they do on the way; offline, four results waited.
    QVERIFY2(lines.at(26).contains(QStringLiteral("4 results waiting")), qPrintable(lines.at(26)));
    QCOMPARE(m_picker.picked(), 4);

    // The deployment kept what the worker did: the note of the completed item,
    // the report and the reason of the block are in the task's thread.
    const QString blockedTask
        = QRegularExpression(QStringLiteral("task (\\d+) In Progress")).match(lines.at(19)).captured(1);
    const auto [status, body]
        = download(QStringLiteral("/api/task/%1/comments").arg(blockedTask), m_window->session()->token.toUtf8());
    QCOMPARE(status, 200);
    QStringList texts;
    for (const QJsonValue comment : QJsonDocument::fromJson(body).object().value("data").toArray())
        texts.append(comment.toObject().value("text").toString());
    for (const char *expected : {"Pressure steady at 4.2 bar after the check.", "Seals weeping, photos to follow.",
                                 "Two extinguishers need new tags, the rest is fine.", "Gauge after the check.",
                                 "Access road flooded, site cannot be reached."})
        QVERIFY2(texts.contains(QString::fromUtf8(expected)), qPrintable(texts.join(QLatin1Char('|'))));
}

void TestDemoHost::tourStopsWhenTheSessionEnds()
{
    // A server that is not there: the library cannot renew the token and ends the session.
    HostSetup setup;
    setup.baseUrl = QStringLiteral("127.0.0.1:1");
    setup.workers.append({7, QStringLiteral("User 7"), QStringLiteral("people_01"), QString()});
    setup.preset = HostSetup::Preset{7, QStringLiteral("stale")};
    DemoHostWindow window(setup, m_rig->environment());
    QTemporaryDir out;
    DemoTour tour(&window, DemoTour::Options{out.path(), std::chrono::milliseconds(kTimeoutMs), std::nullopt, false});
    QCOMPARE(tour.run(), 1);
    QVERIFY2(tour.failure().contains(QStringLiteral("\"dashboard\"")), qPrintable(tour.failure()));
    QVERIFY2(tour.failure().contains(QStringLiteral("session ended")), qPrintable(tour.failure()));
    QVERIFY(tour.summary().isEmpty());
}

void TestDemoHost::signInRefusalsDoNotDecode_data()
{
    // A good answer is taken over in signInStoresTheSession.
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("message");
    QTest::newRow("refusal") << QByteArray(R"({"success":false,"message":"Unknown user"})")
                             << QStringLiteral("Unknown user");
    QTest::newRow("no token") << QByteArray(R"({"success":true,"data":{"userId":2,"assets":[]}})") << QString();
}

void TestDemoHost::signInRefusalsDoNotDecode()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, message);
    try {
        const SignInAnswer answer = json::decode<SignInAnswer>(body);
        QFAIL(qPrintable(answer.token));
    } catch (const json::DecodingError &error) {
        QVERIFY(error.debugDescription().contains(message));
    }
}

void TestDemoHost::initials_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("initials");
    QTest::newRow("two words") << QStringLiteral("Ann Rivers") << QStringLiteral("AR");
    QTest::newRow("three words, lower case") << QStringLiteral("chris van okafor") << QStringLiteral("CV");
    QTest::newRow("blank") << QStringLiteral("  ") << QStringLiteral("?");
}

void TestDemoHost::initials()
{
    QFETCH(QString, name);
    QTEST(hostbrand::initials(name), "initials");
}

void TestDemoHost::options_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("display"); // DISPLAY, WAYLAND_DISPLAY, QT_QPA_PLATFORM
    QTest::addColumn<bool>("valid");
    QTest::addColumn<DemoOptions::Mode>("mode");
    QTest::addColumn<QString>("tourDir");
    QTest::addColumn<QString>("apiHost");

    using M = DemoOptions::Mode;
    const QStringList x11{":0", "", ""};
    const auto row = [](const char *name, const QStringList &arguments, const QStringList &display, M mode,
                        const QString &tourDir = {}, const QString &apiHost = {}) {
        QTest::newRow(name) << arguments << display << true << mode << tourDir << apiHost;
    };
    row("X11: window", {}, x11, M::window);
    row("no display: tour", {}, {"", "", ""}, M::tour, "out/tour");
    row("offscreen over X11: tour", {}, {":0", "", "offscreen"}, M::tour, "out/tour");
    row("tour asked", {"--tour", "/tmp/x"}, x11, M::tour, "/tmp/x");
    row("api host", {"--api-host", "10.0.0.5:8443", "--token", "T", "--user-id", "7"}, x11, M::window, {},
        "10.0.0.5:8443");
    row("help", {"--tour", "x", "-h"}, x11, M::help, "x");
    row("load the dashboard without a display", {"--load-dashboard", "--tasks", "10000"}, {"", "", ""},
        M::loadDashboard);
    row("large text", {"--text-scale", "1.5"}, x11, M::window);
    row("german", {"--language", "de"}, x11, M::window);
    row("at scale", {"--items", "10000", "--comments=2000"}, x11, M::window);
    row("kept store, offline", {"--offline-store", "/tmp/store", "--start-offline"}, x11, M::window);
    const auto refused = [&x11](const char *name, const QStringList &arguments) {
        QTest::newRow(name) << arguments << x11 << false << M::window << QString() << QString();
    };
    refused("api host without token", {"--api-host", "h:1", "--user-id", "7"});
    refused("api host with scheme", {"--api-host", "https://h:1", "--token", "T", "--user-id", "7"});
    refused("tour without folder", {"--tour"});
    refused("unknown", {"--fast"});
    refused("tasks for another server", {"--tasks", "5", "--api-host", "h:1", "--token", "T", "--user-id", "7"});
    refused("text scale below 1", {"--text-scale", "0.5"});
    refused("no language", {"--language", "xx-nonsense"});
    refused("comments for another server", {"--comments", "5", "--api-host", "h:1", "--token", "T", "--user-id", "7"});
    refused("negative items", {"--items", "-1"});
    refused("offline store without folder", {"--offline-store"});
}

void TestDemoHost::options()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, display);
    QFETCH(bool, valid);
    QFETCH(DemoOptions::Mode, mode);
    QFETCH(QString, tourDir);
    QFETCH(QString, apiHost);

    const auto parsed
        = DemoOptions::parse(arguments, DemoOptions::Display{display.at(0), display.at(1), display.at(2)});
    QCOMPARE(parsed.isSuccess(), valid);
    if (!valid) {
        QVERIFY(!parsed.error().isEmpty());
        return;
    }
    QCOMPARE(parsed.value().mode, mode);
    QCOMPARE(parsed.value().tourDir, tourDir);
    QCOMPARE(parsed.value().apiHost.value_or(QString()), apiHost);
    QCOMPARE(parsed.value().textScale, arguments.contains(QStringLiteral("--text-scale")) ? 1.5 : 1.0);
    QCOMPARE(parsed.value().language, arguments.contains(QStringLiteral("--language")) ? "de" : "");
    QCOMPARE(parsed.value().itemsPerTask, arguments.contains(QStringLiteral("--items")) ? 10000 : 0);
    QCOMPARE(parsed.value().commentsPerTask, arguments.contains(QStringLiteral("--comments=2000")) ? 2000 : 0);
    QCOMPARE(parsed.value().offlineStoreFolder,
             arguments.contains(QStringLiteral("--offline-store")) ? "/tmp/store" : "");
    QCOMPARE(parsed.value().startOffline, arguments.contains(QStringLiteral("--start-offline")));
    // The tour is forced only when it was not asked for.
    QCOMPARE(parsed.value().tourForcedByDisplay, mode == DemoOptions::Mode::tour && arguments.isEmpty());
}

QTEST_MAIN(TestDemoHost)
#include "tst_demohost.moc"
