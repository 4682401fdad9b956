// ravelin-demo: the Ravelin task client inside a demo host application, against
// the embedded demo server (or another server that speaks the same API), in a
// window or as a headless tour that writes pictures.

#include "api/sqliteofflinestore.h"
#include "demo/app/demohostwindow.h"
#include "demo/app/demooptions.h"
#include "demo/app/demotour.h"
#include "demo/app/embeddedsetup.h"
#include "demo/app/hostbrand.h"
#include "demo/app/switchablenetworkaccess.h"
#include "demo/server/demodata.h"
#include "demo/server/demoserver.h"
#include "host/notificationcenter.h"
#include "host/ravelinnavvc.h"
#include "host/translations.h"
#include "tasks/dashboardvc.h"
#include "tasks/dashboardvm.h"
#include "views/refreshablescrollarea.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSettings>
#include <QSslCertificate>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <memory>
#include <optional>

using namespace ravelin;

namespace {

// The host's own store; the library keeps its session data in it.
std::unique_ptr<QSettings> openUserDefaults()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (!folder.isEmpty() && QDir().mkpath(folder))
        return std::make_unique<QSettings>(QDir(folder).filePath(QStringLiteral("user-defaults.ini")),
                                           QSettings::IniFormat);
    return std::make_unique<QSettings>(QStringLiteral("Ravelin"), QStringLiteral("Ravelin Demo"));
}

HostSetup presetSetup(const DemoOptions &options)
{
    HostSetup setup;
    setup.baseUrl = *options.apiHost;
    const QString name = QStringLiteral("User %1").arg(options.userId);
    setup.workers.append(
        {options.userId, name, QStringLiteral("people_01"), QStringLiteral("Token from the command line")});
    setup.preset = HostSetup::Preset{options.userId, options.token};
    return setup;
}

// --ca-certificate: only the certificates in the file are trusted.
Result<TrustPolicy, QString> trustedCertificates(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Result<TrustPolicy, QString>::failure(
            QStringLiteral("--ca-certificate: cannot read %1: %2").arg(path, file.errorString()));
    const QList<QSslCertificate> certificates = QSslCertificate::fromData(file.readAll(), QSsl::Pem);
    if (certificates.isEmpty())
        return Result<TrustPolicy, QString>::failure(
            QStringLiteral("--ca-certificate: %1 holds no PEM certificate").arg(path));
    return Result<TrustPolicy, QString>::success(TrustPolicy::certificateAuthorities(certificates));
}

// The process's peak resident memory in MiB (Linux), or nothing.
std::optional<double> peakResidentMiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return std::nullopt;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').constFirst().toDouble() / 1024.0;
    }
    return std::nullopt;
}

// Waits until the dashboard shows the worker's tasks (the first answer in and
// painted), prints the figures and ends the process.
int loadDashboard(DemoHostWindow &window)
{
    QElapsedTimer clock;
    clock.start();
    QTimer poll;
    int exitCode = 1;
    QObject::connect(&poll, &QTimer::timeout, &window, [&] {
        RavelinNavVC *nav = window.navVC();
        DashboardVC *dashboard = nav ? nav->dashboard() : nullptr;
        const DashboardVM *viewModel = dashboard ? dashboard->viewModel() : nullptr;
        const bool shown = viewModel && !viewModel->taskList().tasks.isEmpty() && !dashboard->rows().isEmpty()
            && !dashboard->refreshControl()->isRefreshing();
        if (!shown && clock.elapsed() < 120000)
            return;
        poll.stop();
        if (shown) {
            (void)window.grab(); // one more frame, painted
            const auto peak = peakResidentMiB();
            std::printf("dashboard: %lld tasks in %lld sections, shown %lld ms after start; peak resident memory %s\n",
                        static_cast<long long>(viewModel->taskList().tasks.size()),
                        static_cast<long long>(viewModel->sections().size()), static_cast<long long>(clock.elapsed()),
                        peak ? qPrintable(QStringLiteral("%1 MiB").arg(*peak, 0, 'f', 1)) : "unknown");
            exitCode = 0;
        } else {
            std::fprintf(stderr, "The dashboard did not show any task within 120 s\n");
        }
        QApplication::exit(exitCode);
    });
    poll.start(20);
    QApplication::exec();
    return exitCode;
}

} // namespace

int main(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const auto parsed = DemoOptions::parse(arguments, DemoOptions::Display::fromEnvironment());
    if (!parsed.isSuccess()) {
        std::fprintf(stderr, "%s\n\n%s", qPrintable(parsed.error()), qPrintable(DemoOptions::usage()));
        return 2;
    }
    const DemoOptions &options = parsed.value();
    if (options.mode == DemoOptions::Mode::help) {
        std::printf("%s", qPrintable(DemoOptions::usage()));
        return 0;
    }
    const bool tour = options.mode == DemoOptions::Mode::tour;
    const bool loadOnly = options.mode == DemoOptions::Mode::loadDashboard;
    if (loadOnly && !DemoOptions::Display::fromEnvironment().isAvailable())
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (tour) {
        // Headless: everything is drawn into pictures.
        qputenv("QT_QPA_PLATFORM", "offscreen");
        if (options.tourForcedByDisplay)
            std::printf("No display found: running the headless tour into %s\n", qPrintable(options.tourDir));
    }

    QApplication app(argc, argv);
    if (options.textScale > 1.0) {
        // Large text, as the system setting gives it: the application font grows.
        QFont font = QApplication::font();
        font.setPointSizeF(font.pointSizeF() * options.textScale);
        QApplication::setFont(font);
    }
    ravelin::installTranslator(options.language.isEmpty() ? QLocale() : QLocale(options.language));
    QApplication::setOrganizationName(QStringLiteral("Ravelin"));
    QApplication::setApplicationName(hostbrand::productName);

    // Every request of the host and of the task client goes through it.
    SwitchableNetworkAccess network;
    network.setOffline(options.startOffline);
    const std::unique_ptr<QSettings> userDefaults = openUserDefaults();

    // The task client's offline store: in the folder given, or a new one for this
    // run (so that every tour starts alike). It outlives the window.
    std::optional<QTemporaryDir> runFolder;
    QString storeFolder = options.offlineStoreFolder;
    if (storeFolder.isEmpty()) {
        runFolder.emplace(QDir::temp().filePath(QStringLiteral("ravelin-demo-XXXXXX")));
        storeFolder = runFolder->isValid() ? runFolder->path() : QString();
    }
    std::unique_ptr<SqliteOfflineStore> offlineStore;
    if (!storeFolder.isEmpty() && QDir().mkpath(storeFolder))
        offlineStore = std::make_unique<SqliteOfflineStore>(storeFolder);
    if (!offlineStore || !offlineStore->isOpen()) {
        std::fprintf(stderr, "The offline store could not be opened in %s: the task client works online only\n",
                     qPrintable(storeFolder));
        offlineStore.reset();
    }

    std::unique_ptr<DemoServer> server;
    HostSetup setup;
    if (options.apiHost) {
        setup = presetSetup(options);
    } else {
        const DemoClock clock = systemDemoClock();
        DemoData data = DemoData::seeded(clock(), options.tasksPerWorker);
        data.scaleFirstTasksInProgress(options.itemsPerTask, options.commentsPerTask, clock());
        server = std::make_unique<DemoServer>(data, clock);
        if (!server->start(0)) {
            std::fprintf(stderr, "The demo server could not listen on 127.0.0.1\n");
            return 1;
        }
        setup = embeddedSetup(*server, data);
        std::printf("Demo server listening on https://%s\n", qPrintable(server->baseUrl()));
    }
    std::fflush(stdout);

    // Pictures are the host's drawn ones, in the window as in the headless tour.
    DemoHostWindow::Environment environment{userDefaults.get(), &network, &NotificationCenter::defaultCenter(),
                                            systemClock()};
    environment.offlineStore = offlineStore.get();
    if (!options.caCertificateFile.isEmpty()) {
        const auto policy = trustedCertificates(options.caCertificateFile);
        if (!policy.isSuccess()) {
            std::fprintf(stderr, "%s\n", qPrintable(policy.error()));
            return 2;
        }
        environment.trustPolicy = policy.value();
    }
    DemoHostWindow window(setup, std::move(environment));
    if (loadOnly) {
        window.show();
        window.signIn(setup.preset ? setup.preset->userId : setup.workers.constFirst().id);
        return loadDashboard(window);
    }
    if (!tour) {
        window.show();
        if (setup.preset)
            window.signIn(setup.preset->userId);
        return QApplication::exec();
    }

    DemoTour::Options tourOptions{options.tourDir, std::chrono::milliseconds(15000), std::nullopt,
                                  !options.apiHost.has_value()};
    tourOptions.atScale = options.itemsPerTask > 0 || options.commentsPerTask > 0;
    DemoTour demoTour(&window, std::move(tourOptions));
    QTimer::singleShot(0, &window, [&demoTour] { QApplication::exit(demoTour.run()); });
    return QApplication::exec();
}
