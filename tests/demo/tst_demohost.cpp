#include "demo/app/demohostwindow.h"
#include "demo/app/demooptions.h"
#include "demo/app/demotour.h"
#include "demo/app/hostbrand.h"
#include "demo/app/hostbar.h"
#include "demo/app/hostpanel.h"
#include "demo/app/signinanswer.h"
#include "demo/app/signinscreen.h"
#include "demo/app/taskeventsheet.h"
#include "demo/server/demodata.h"
#include "demo/server/demoserver.h"
#include "host/navigationbar.h"
#include "host/notificationcenter.h"
#include "host/ravelinnavvc.h"
#include "host/taskupdateevent.h"
#include "tasks/dashboardheaderview.h"
#include "tasks/dashboardvc.h"
#include "tasks/dashboardvm.h"
#include "views/refreshablescrollarea.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QSslCertificate>
#include <QSslError>
#include <QStackedWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include <memory>
#include <optional>

using namespace ravelin;

Q_DECLARE_METATYPE(ravelin::TaskUpdateEventType)
Q_DECLARE_METATYPE(ravelin::DemoOptions::Mode)

namespace {

constexpr int kTimeoutMs = 15000;

struct Download
{
    int status = 0;
    QByteArray body;
};

// Fetches a URL of the demo server, trusting exactly its certificate.
Download download(const DemoServer &server, const QUrl &url, const QByteArray &token = {})
{
    QNetworkAccessManager network;
    QNetworkRequest request(url);
    if (!token.isEmpty())
        request.setRawHeader("Authorization", "Bearer " + token);
    std::unique_ptr<QNetworkReply> reply(network.get(request));
    reply->ignoreSslErrors({QSslError(QSslError::SelfSignedCertificate,
                                      QSslCertificate::fromData(server.certificatePem(), QSsl::Pem).constFirst())});
    QSignalSpy finished(reply.get(), &QNetworkReply::finished);
    if (!reply->isFinished())
        finished.wait(kTimeoutMs);
    return Download{reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), reply->readAll()};
}

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
    void initTestCase();
    void init();
    void cleanup();

    void signInStoresTheSession_data();
    void signInStoresTheSession();
    void refusedSignInStaysOnSignIn();
    void panelFollowsDidSwipe();
    void uploadImageStoresPicture_data();
    void uploadImageStoresPicture();
    void emergencyTurnsTheBarRed();
    void taskEventCarriesItsType_data();
    void taskEventCarriesItsType();
    void sessionExpiredReturnsToSignIn();
    void expiredSessionFromTheLibrary();

    void tourWritesPicturesAndSummary();
    void tourStopsWhenTheSessionEnds();
    void signInAnswerDecoding_data();
    void signInAnswerDecoding();
    void initials_data();
    void initials();

    void options_data();
    void options();
    void displayChoosesTheTour_data();
    void displayChoosesTheTour();

private:
    RavelinNavVC *signIn(qint64 workerId);
    void waitForDashboard(RavelinNavVC *navVC);

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<QSettings> m_settings;
    std::unique_ptr<QNetworkAccessManager> m_network;
    std::unique_ptr<NotificationCenter> m_center;
    std::unique_ptr<DemoServer> m_server;
    std::unique_ptr<DemoHostWindow> m_window;
    DemoData m_data;
};

void TestDemoHost::initTestCase()
{
    qRegisterMetaType<RavelinNavVC *>();
}

void TestDemoHost::init()
{
    const DemoClock clock = systemDemoClock();
    m_data = DemoData::seeded(clock());
    m_server = std::make_unique<DemoServer>(m_data, clock);
    QVERIFY(m_server->start(0));

    m_dir = std::make_unique<QTemporaryDir>();
    m_settings = std::make_unique<QSettings>(m_dir->filePath(QStringLiteral("defaults.ini")), QSettings::IniFormat);
    m_network = std::make_unique<QNetworkAccessManager>();
    m_center = std::make_unique<NotificationCenter>();

    HostSetup setup;
    setup.baseUrl = m_server->baseUrl();
    setup.certificatePem = m_server->certificatePem();
    for (const DemoUser &user : m_server->users()) {
        if (user.canSignIn)
            setup.workers.append({user.id, user.name, user.icon, QStringLiteral("Field worker")});
    }
    for (const DemoTask &task : m_data.tasks)
        setup.tasks.append({task.id, task.name, task.assignedUserId});
    m_window = std::make_unique<DemoHostWindow>(
        setup, DemoHostWindow::Environment{m_settings.get(), m_network.get(), m_center.get(), systemClock()});
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void TestDemoHost::cleanup()
{
    m_window.reset();
    m_server.reset();
    m_center.reset();
    m_network.reset();
    m_settings.reset();
    m_dir.reset();
}

RavelinNavVC *TestDemoHost::signIn(qint64 workerId)
{
    QSignalSpy started(m_window.get(), &DemoHostWindow::sessionStarted);
    SignInScreen *screen = m_window->signInScreen();
    if (!screen->selectWorker(workerId))
        return nullptr;
    screen->signInButton()->click();
    if (started.isEmpty() && !started.wait(kTimeoutMs))
        return nullptr;
    return m_window->navVC();
}

void TestDemoHost::waitForDashboard(RavelinNavVC *navVC)
{
    // Shown, observing the host's notifications, and done with its first fetch.
    QTRY_VERIFY_WITH_TIMEOUT(navVC->dashboard() && navVC->dashboard()->headerView()
                                 && m_center->hasObserver(navVC->dashboard(), NotificationNames::emergencyUpdate)
                                 && navVC->dashboard()->refreshControl()
                                 && !navVC->dashboard()->refreshControl()->isRefreshing()
                                 && !navVC->dashboard()->viewModel()->taskList().tasks.isEmpty(),
                             kTimeoutMs);
}

void TestDemoHost::signInStoresTheSession_data()
{
    QTest::addColumn<qint64>("workerId");
    QTest::addColumn<QString>("name");
    QTest::newRow("Ann") << qint64(1) << QStringLiteral("Ann Rivers");
    QTest::newRow("Chris") << qint64(3) << QStringLiteral("Chris Okafor");
}

void TestDemoHost::signInStoresTheSession()
{
    QFETCH(qint64, workerId);
    QFETCH(QString, name);

    // What the library stored when it took the session over, before any later token change.
    QJsonObject storedAtStart;
    connect(m_window.get(), &DemoHostWindow::sessionStarted, this, [&] {
        storedAtStart = QJsonDocument::fromJson(m_settings->value(QStringLiteral("quorApiData")).toByteArray()).object();
    });
    RavelinNavVC *navVC = signIn(workerId);
    QVERIFY(navVC);
    QVERIFY(navVC->isVisible());
    QVERIFY(!m_window->signInScreen()->isVisible());

    const QString token = storedAtStart.value(QStringLiteral("tokenString")).toString();
    QCOMPARE(storedAtStart.value(QStringLiteral("baseURL")).toString(), m_server->baseUrl());
    QVERIFY(!token.isEmpty());
    QCOMPARE(token, m_window->session()->token);
    // The stored token is one the server issued for this sign-in.
    QCOMPARE(download(*m_server, QUrl(QStringLiteral("https://%1/api/settings-constants").arg(m_server->baseUrl())),
                      token.toUtf8())
                 .status,
             200);

    QCOMPARE(navVC->currentUserId, std::optional<qint64>(workerId));
    QCOMPARE(navVC->vcDelegate(), static_cast<RavelinNavVCDelegate *>(m_window.get()));
    QVERIFY(navVC->assetsList.has_value());
    for (const DemoUser &user : m_server->users())
        QCOMPARE(navVC->assetsList->value(user.id), (QStringList{user.name, user.icon}));
    QCOMPARE(m_window->hostPanel()->userName(), name);
}

void TestDemoHost::refusedSignInStaysOnSignIn()
{
    // The dispatch desk is a person of the deployment who may not sign in.
    const auto desk = std::find_if(m_data.users.cbegin(), m_data.users.cend(), [](const DemoUser &u) { return !u.canSignIn; });
    QVERIFY(desk != m_data.users.cend());
    QSignalSpy failed(m_window.get(), &DemoHostWindow::signInFailed);
    m_window->signIn(desk->id);
    QVERIFY(m_window->signInScreen()->isBusy());
    QVERIFY(failed.wait(kTimeoutMs));
    QVERIFY(!m_window->navVC());
    QVERIFY(!m_window->isSignedIn());
    QVERIFY(!m_window->signInScreen()->isBusy());
    QVERIFY(m_window->signInScreen()->message().contains(failed.first().first().toString()));
}

void TestDemoHost::panelFollowsDidSwipe()
{
    RavelinNavVC *navVC = signIn(2);
    QVERIFY(navVC);
    waitForDashboard(navVC);
    QSignalSpy swiped(m_window.get(), &DemoHostWindow::swiped);
    QToolButton *panelButton = navVC->dashboard()->headerView()->panelButton();
    HostPanel *panel = m_window->hostPanel();
    QVERIFY(!panel->isShown());

    panelButton->click();
    QCOMPARE(swiped.size(), 1);
    QCOMPARE(swiped.at(0).at(0).toBool(), false);
    QVERIFY(panel->isShown());
    QTRY_VERIFY_WITH_TIMEOUT(panel->isSettled() && panel->isVisible(), kTimeoutMs);

    panelButton->click();
    QCOMPARE(swiped.at(1).at(0).toBool(), true);
    QVERIFY(!panel->isShown());
    QTRY_VERIFY_WITH_TIMEOUT(panel->isSettled() && !panel->isVisible(), kTimeoutMs);

    // Closed by the host itself: the dashboard's button opens it again on its next tap.
    panelButton->click();
    QVERIFY(panel->isShown());
    emit panel->closeRequested();
    QVERIFY(!panel->isShown());
    panelButton->click();
    QCOMPARE(swiped.last().at(0).toBool(), false);
    QVERIFY(panel->isShown());
}

void TestDemoHost::uploadImageStoresPicture_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<bool>("stored");
    QTest::newRow("plain name") << QStringLiteral("comment_1795169730.jpg") << true;
    QTest::newRow("path outside the folder") << QStringLiteral("../escape.jpg") << false;
}

void TestDemoHost::uploadImageStoresPicture()
{
    QFETCH(QString, fileName);
    QFETCH(bool, stored);
    QVERIFY(signIn(1));

    QImage picture(64, 48, QImage::Format_RGB32);
    picture.fill(QColor(20, 160, 90));
    std::optional<std::pair<bool, std::optional<QString>>> answer;
    m_window->uploadImage(picture, fileName, [&answer](bool success, std::optional<QString> path) {
        answer = std::make_pair(success, path);
    });
    QTRY_VERIFY_WITH_TIMEOUT(answer.has_value(), kTimeoutMs);
    QCOMPARE(answer->first, stored);
    if (!stored) {
        QVERIFY(!answer->second.has_value());
        return;
    }
    QVERIFY(answer->second.has_value());
    const QString path = *answer->second;
    QVERIFY(path.endsWith(fileName));

    // The answered path is where the server gives the picture back.
    const Download file = download(*m_server, QUrl(QStringLiteral("https://%1/files/%2").arg(m_server->baseUrl(), path)));
    QCOMPARE(file.status, 200);
    const QImage back = QImage::fromData(file.body);
    QCOMPARE(back.size(), picture.size());
    const QColor middle = back.pixelColor(32, 24);
    QVERIFY2(qAbs(middle.green() - 160) < 12 && qAbs(middle.red() - 20) < 12, qPrintable(middle.name()));
}

void TestDemoHost::emergencyTurnsTheBarRed()
{
    RavelinNavVC *navVC = signIn(1);
    QVERIFY(navVC);
    waitForDashboard(navVC);
    QList<QVariant> posted;
    QObject observer;
    m_center->addObserver(&observer, NotificationNames::emergencyUpdate, [&posted](const QVariant &o) { posted.append(o); });
    QVERIFY(!isRed(navVC->navigationBar()->barColor()));

    QPushButton *toggle = m_window->hostBar()->emergencyButton();
    toggle->click();
    QCOMPARE(posted, (QList<QVariant>{QVariant(true)}));
    QVERIFY2(isRed(navVC->navigationBar()->barColor()), qPrintable(navVC->navigationBar()->barColor().name()));

    toggle->click();
    QCOMPARE(posted.last(), QVariant(false));
    QCOMPARE(navVC->navigationBar()->barColor(), navVC->standardBarColor());
}

void TestDemoHost::taskEventCarriesItsType_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<TaskUpdateEventType>("type");
    QTest::newRow("assigned") << QStringLiteral("task-assigned") << TaskUpdateEventType::kAssigned;
    QTest::newRow("unassigned") << QStringLiteral("task-unassigned") << TaskUpdateEventType::kUnassigned;
    QTest::newRow("deleted") << QStringLiteral("task-deleted") << TaskUpdateEventType::kDeleted;
}

void TestDemoHost::taskEventCarriesItsType()
{
    QFETCH(QString, kind);
    QFETCH(TaskUpdateEventType, type);
    QVERIFY(signIn(2));
    QList<TaskUpdateEventPtr> events;
    QObject observer;
    m_center->addObserver(&observer, NotificationNames::taskEvent, [&events](const QVariant &o) {
        events.append(o.value<TaskUpdateEventPtr>());
    });

    // A task of another worker: the menu offers every task of the deployment.
    const DemoTask &task = m_data.tasks.at(3);
    m_window->openTaskEventSheet();
    TaskEventSheet *sheet = m_window->taskEventSheet();
    QVERIFY(sheet->isOpen());
    QCOMPARE(sheet->tasks().size(), m_data.tasks.size());
    QCOMPARE(sheet->tasks().constFirst().assignedUserId, std::optional<qint64>(2)); // the worker's own come first
    QVERIFY(sheet->selectTask(task.id));
    QVERIFY(sheet->selectKind(kind));
    sheet->postButton()->click();

    QVERIFY(!sheet->isOpen());
    QCOMPARE(events.size(), 1);
    QVERIFY(events.first());
    QCOMPARE(events.first()->id, task.id);
    QCOMPARE(events.first()->name, task.name);
    QCOMPARE(events.first()->type, type);
    QCOMPARE(events.first()->assetId, std::optional<qint64>(2));
}

void TestDemoHost::sessionExpiredReturnsToSignIn()
{
    QPointer<RavelinNavVC> first = signIn(1);
    QVERIFY(first);
    m_window->hostBar()->emergencyButton()->click();
    QSignalSpy returned(m_window.get(), &DemoHostWindow::returnedToSignIn);

    m_window->sessionExpired();
    QCOMPARE(returned.size(), 1);
    QVERIFY(m_window->signInScreen()->isVisible());
    QVERIFY(!m_window->signInScreen()->message().isEmpty());
    QVERIFY(!m_window->isSignedIn());
    QVERIFY(!m_window->navVC());
    QVERIFY(!m_window->hostBar()->isEmergency());
    QTRY_VERIFY_WITH_TIMEOUT(first.isNull(), kTimeoutMs);

    // A second expiry of the same session changes nothing.
    m_window->sessionExpired();
    QCOMPARE(returned.size(), 1);

    QPointer<RavelinNavVC> second = signIn(3);
    QVERIFY(second);
    QCOMPARE(second->currentUserId, std::optional<qint64>(3));
}

void TestDemoHost::expiredSessionFromTheLibrary()
{
    RavelinNavVC *navVC = signIn(1);
    QVERIFY(navVC);
    waitForDashboard(navVC);
    QSignalSpy returned(m_window.get(), &DemoHostWindow::returnedToSignIn);

    // Without stored session data the library's next request tells the host.
    m_settings->remove(QStringLiteral("quorApiData"));
    navVC->dashboard()->pullToRefresh();
    QTRY_VERIFY_WITH_TIMEOUT(!returned.isEmpty(), kTimeoutMs);
    QVERIFY(m_window->signInScreen()->isVisible());
}

void TestDemoHost::tourWritesPicturesAndSummary()
{
    QTemporaryDir out;
    QVERIFY(out.isValid());
    DemoTour tour(m_window.get(), DemoTour::Options{out.path(), std::chrono::milliseconds(kTimeoutMs), 3, true});
    const int code = tour.run();
    QVERIFY2(code == 0, qPrintable(tour.failure()));

    const QStringList pictures = QDir(out.path()).entryList({QStringLiteral("*.png")}, QDir::Files, QDir::Name);
    const QStringList expected{"01-sign-in.png",        "02-dashboard.png",        "03-acknowledge-prompt.png",
                               "04-acknowledge.png",    "05-start.png",            "06-host-panel.png",
                               "07-task-event-sheet.png", "08-task-event.png",     "09-emergency.png"};
    QCOMPARE(pictures, expected);
    for (const QString &name : pictures) {
        const QImage picture(QDir(out.path()).filePath(name));
        QCOMPARE(picture.size(), m_window->size() * picture.devicePixelRatio());
    }
    // The emergency step's picture has the red bar at its top.
    const QImage last(QDir(out.path()).filePath(expected.last()));
    QVERIFY(isRed(last.pixelColor(last.width() / 2, 4)));

    QFile summary(QDir(out.path()).filePath(QStringLiteral("summary.txt")));
    QVERIFY(summary.open(QIODevice::ReadOnly | QIODevice::Text));
    const QStringList lines = QString::fromUtf8(summary.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines, tour.summary());
    QCOMPARE(lines.size(), expected.size());
    QVERIFY(lines.at(0).startsWith(QStringLiteral("01 sign-in: ")) && lines.at(0).contains(QStringLiteral("Chris Okafor")));
    QVERIFY2(lines.at(3).contains(QStringLiteral("Assigned -> Acknowledged")), qPrintable(lines.at(3)));
    QVERIFY2(lines.at(7).contains(QStringLiteral("Task newly assigned to you.")), qPrintable(lines.at(7)));
}

void TestDemoHost::tourStopsWhenTheSessionEnds()
{
    // A server that is not there: the library cannot renew the token and ends the session.
    HostSetup setup;
    setup.baseUrl = QStringLiteral("127.0.0.1:1");
    setup.workers.append({7, QStringLiteral("User 7"), QStringLiteral("people_01"), QString()});
    setup.preset = HostSetup::Preset{7, QStringLiteral("stale")};
    DemoHostWindow window(setup, DemoHostWindow::Environment{m_settings.get(), m_network.get(), m_center.get(), systemClock()});
    QTemporaryDir out;
    DemoTour tour(&window, DemoTour::Options{out.path(), std::chrono::milliseconds(kTimeoutMs), std::nullopt, false});
    QCOMPARE(tour.run(), 1);
    QVERIFY2(tour.failure().contains(QStringLiteral("\"dashboard\"")), qPrintable(tour.failure()));
    QVERIFY2(tour.failure().contains(QStringLiteral("session ended")), qPrintable(tour.failure()));
    QVERIFY(tour.summary().isEmpty());
}

void TestDemoHost::signInAnswerDecoding_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("decodes");
    QTest::addColumn<QString>("tokenOrMessage");
    QTest::newRow("answer") << QByteArray(R"({"success":true,"data":{"token":"abc","userId":2,"assets":[{"id":2,"name":"Bo","icon":"people_02"}]}})")
                            << true << QStringLiteral("abc");
    QTest::newRow("refusal") << QByteArray(R"({"success":false,"message":"Unknown user"})") << false << QStringLiteral("Unknown user");
    QTest::newRow("no token") << QByteArray(R"({"success":true,"data":{"userId":2,"assets":[]}})") << false << QString();
}

void TestDemoHost::signInAnswerDecoding()
{
    QFETCH(QByteArray, body);
    QFETCH(bool, decodes);
    QFETCH(QString, tokenOrMessage);
    try {
        const SignInAnswer answer = json::decode<SignInAnswer>(body);
        QVERIFY(decodes);
        QCOMPARE(answer.token, tokenOrMessage);
        QCOMPARE(answer.assetsList(), (QMap<qint64, QStringList>{{2, {"Bo", "people_02"}}}));
    } catch (const json::DecodingError &error) {
        QVERIFY(!decodes);
        QVERIFY(error.debugDescription().contains(tokenOrMessage));
    }
}

void TestDemoHost::initials_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("initials");
    QTest::newRow("two words") << QStringLiteral("Ann Rivers") << QStringLiteral("AR");
    QTest::newRow("three words") << QStringLiteral("chris van okafor") << QStringLiteral("CV");
    QTest::newRow("one word") << QStringLiteral("Dispatch") << QStringLiteral("D");
    QTest::newRow("blank") << QStringLiteral("  ") << QStringLiteral("?");
}

void TestDemoHost::initials()
{
    QFETCH(QString, name);
    QFETCH(QString, initials);
    QCOMPARE(hostbrand::initials(name), initials);
}

void TestDemoHost::options_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("withDisplay");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<DemoOptions::Mode>("mode");
    QTest::addColumn<QString>("tourDir");
    QTest::addColumn<QString>("apiHost");

    using M = DemoOptions::Mode;
    QTest::newRow("window") << QStringList{} << true << true << M::window << QString() << QString();
    QTest::newRow("no display: tour") << QStringList{} << false << true << M::tour << QStringLiteral("out/tour") << QString();
    QTest::newRow("tour asked") << QStringList{"--tour", "/tmp/x"} << true << true << M::tour << QStringLiteral("/tmp/x")
                                << QString();
    QTest::newRow("tour with =") << QStringList{"--tour=pics"} << true << true << M::tour << QStringLiteral("pics") << QString();
    QTest::newRow("api host") << QStringList{"--api-host", "10.0.0.5:8443", "--token", "T", "--user-id", "7"} << true << true
                              << M::window << QString() << QStringLiteral("10.0.0.5:8443");
    QTest::newRow("api host without token") << QStringList{"--api-host", "h:1", "--user-id", "7"} << true << false << M::window
                                            << QString() << QString();
    QTest::newRow("api host with scheme") << QStringList{"--api-host", "https://h:1", "--token", "T", "--user-id", "7"} << true
                                          << false << M::window << QString() << QString();
    QTest::newRow("user id not a number") << QStringList{"--api-host", "h:1", "--token", "T", "--user-id", "x"} << true << false
                                          << M::window << QString() << QString();
    QTest::newRow("token alone") << QStringList{"--token", "T"} << true << false << M::window << QString() << QString();
    QTest::newRow("tour without folder") << QStringList{"--tour"} << true << false << M::window << QString() << QString();
    QTest::newRow("unknown") << QStringList{"--fast"} << true << false << M::window << QString() << QString();
    QTest::newRow("help") << QStringList{"--tour", "x", "-h"} << true << true << M::help << QStringLiteral("x") << QString();
}

void TestDemoHost::options()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, withDisplay);
    QFETCH(bool, valid);
    QFETCH(DemoOptions::Mode, mode);
    QFETCH(QString, tourDir);
    QFETCH(QString, apiHost);

    const DemoOptions::Display display{withDisplay ? QStringLiteral(":0") : QString(), QString(), QString()};
    const auto parsed = DemoOptions::parse(arguments, display);
    QCOMPARE(parsed.isSuccess(), valid);
    if (!valid) {
        QVERIFY(!parsed.error().isEmpty());
        return;
    }
    QCOMPARE(parsed.value().mode, mode);
    QCOMPARE(parsed.value().tourDir, tourDir);
    QCOMPARE(parsed.value().apiHost.value_or(QString()), apiHost);
}

void TestDemoHost::displayChoosesTheTour_data()
{
    QTest::addColumn<QString>("display");
    QTest::addColumn<QString>("wayland");
    QTest::addColumn<QString>("platform");
    QTest::addColumn<bool>("tour");
    QTest::newRow("X11") << QStringLiteral(":0") << QString() << QString() << false;
    QTest::newRow("Wayland") << QString() << QStringLiteral("wayland-0") << QString() << false;
    QTest::newRow("nothing") << QString() << QString() << QString() << true;
    QTest::newRow("offscreen over X11") << QStringLiteral(":0") << QString() << QStringLiteral("offscreen") << true;
}

void TestDemoHost::displayChoosesTheTour()
{
    QFETCH(QString, display);
    QFETCH(QString, wayland);
    QFETCH(QString, platform);
    QFETCH(bool, tour);
    const auto parsed = DemoOptions::parse({}, DemoOptions::Display{display, wayland, platform});
    QVERIFY(parsed.isSuccess());
    QCOMPARE(parsed.value().mode == DemoOptions::Mode::tour, tour);
    QCOMPARE(parsed.value().tourForcedByDisplay, tour);
}

QTEST_MAIN(TestDemoHost)
#include "tst_demohost.moc"
