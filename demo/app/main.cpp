// ravelin-demo: the Ravelin task client inside a demo host application, against
// the embedded demo server (or another server that speaks the same API), in a
// window or as a headless tour that writes pictures.

#include "demo/app/demohostwindow.h"
#include "demo/app/demooptions.h"
#include "demo/app/demotour.h"
#include "demo/app/hostbrand.h"
#include "demo/server/demodata.h"
#include "demo/server/demoserver.h"
#include "host/notificationcenter.h"

#include <QApplication>
#include <QDir>
#include <QNetworkAccessManager>
#include <QSettings>
#include <QStandardPaths>
#include <QTimer>

#include <cstdio>
#include <memory>

using namespace ravelin;

namespace {

// The host's own store; the library keeps its session data in it.
std::unique_ptr<QSettings> openUserDefaults()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (!folder.isEmpty() && QDir().mkpath(folder))
        return std::make_unique<QSettings>(QDir(folder).filePath(QStringLiteral("user-defaults.ini")), QSettings::IniFormat);
    return std::make_unique<QSettings>(QStringLiteral("Ravelin"), QStringLiteral("Ravelin Demo"));
}

HostSetup embeddedSetup(const DemoServer &server, const DemoData &data)
{
    HostSetup setup;
    setup.baseUrl = server.baseUrl();
    setup.certificatePem = server.certificatePem();
    for (const DemoUser &user : server.users()) {
        if (user.canSignIn)
            setup.workers.append({user.id, user.name, user.icon, QStringLiteral("Field worker")});
    }
    for (const DemoTask &task : data.tasks)
        setup.tasks.append({task.id, task.name, task.assignedUserId});
    return setup;
}

HostSetup presetSetup(const DemoOptions &options)
{
    HostSetup setup;
    setup.baseUrl = *options.apiHost;
    const QString name = QStringLiteral("User %1").arg(options.userId);
    setup.workers.append({options.userId, name, QStringLiteral("people_01"), QStringLiteral("Token from the command line")});
    setup.preset = HostSetup::Preset{options.userId, options.token};
    return setup;
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
    if (tour) {
        // Headless: everything is drawn into pictures.
        qputenv("QT_QPA_PLATFORM", "offscreen");
        if (options.tourForcedByDisplay)
            std::printf("No display found: running the headless tour into %s\n", qPrintable(options.tourDir));
    }

    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Ravelin"));
    QApplication::setApplicationName(hostbrand::productName);

    QNetworkAccessManager network;
    const std::unique_ptr<QSettings> userDefaults = openUserDefaults();

    std::unique_ptr<DemoServer> server;
    HostSetup setup;
    if (options.apiHost) {
        setup = presetSetup(options);
    } else {
        const DemoClock clock = systemDemoClock();
        const DemoData data = DemoData::seeded(clock());
        server = std::make_unique<DemoServer>(data, clock);
        if (!server->start(0)) {
            std::fprintf(stderr, "The demo server could not listen on 127.0.0.1\n");
            return 1;
        }
        setup = embeddedSetup(*server, data);
        std::printf("Demo server listening on https://%s\n", qPrintable(server->baseUrl()));
    }
    std::fflush(stdout);

    DemoHostWindow window(setup, DemoHostWindow::Environment{userDefaults.get(), &network,
                                                             &NotificationCenter::defaultCenter(), systemClock()});
    if (!tour) {
        window.show();
        if (setup.preset)
            window.signIn(setup.preset->userId);
        return QApplication::exec();
    }

    DemoTour demoTour(&window, DemoTour::Options{options.tourDir, std::chrono::milliseconds(15000), std::nullopt,
                                                 !options.apiHost.has_value()});
    QTimer::singleShot(0, &window, [&demoTour] { QApplication::exit(demoTour.run()); });
    return QApplication::exec();
}
