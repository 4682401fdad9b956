#include "uimonkey.h"

#include "demo/app/demohostwindow.h"
#include "demo/app/switchablenetworkaccess.h"
#include "demo/server/demodata.h"
#include "demo/server/demoserver.h"
#include "host/notificationcenter.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

using namespace ravelin;

namespace {

// A short walk with a fixed seed; scripts/monkey runs long ones under the
// sanitizers with RAVELIN_MONKEY_SEED and RAVELIN_MONKEY_ACTIONS.
constexpr quint32 defaultSeed = 20261120;
constexpr int defaultActions = 300;
constexpr int progressEvery = 1000;

quint32 seedFromEnvironment()
{
    bool ok = false;
    const quint32 seed = qEnvironmentVariable("RAVELIN_MONKEY_SEED").toUInt(&ok);
    return ok ? seed : defaultSeed;
}

int actionsFromEnvironment()
{
    bool ok = false;
    const int actions = qEnvironmentVariableIntValue("RAVELIN_MONKEY_ACTIONS", &ok);
    return ok && actions > 0 ? actions : defaultActions;
}

} // namespace

// The demo host with the task client, against the demo deployment, walked by
// the UI monkey: the walk ends with the window still there, and the process
// neither crashes nor stops on a programming error on the way.
class TestUiMonkey : public QObject
{
    Q_OBJECT

private slots:
    void walk();
};

void TestUiMonkey::walk()
{
    const quint32 seed = seedFromEnvironment();
    const int actions = actionsFromEnvironment();
    std::printf("UI monkey: seed %u, %d actions (replay with RAVELIN_MONKEY_SEED=%u RAVELIN_MONKEY_ACTIONS=%d)\n", seed,
                actions, seed, actions);
    std::fflush(stdout);

    const DemoClock clock = systemDemoClock();
    const DemoData data = DemoData::seeded(clock());
    DemoServer server(data, clock);
    QVERIFY(server.start(0));
    QTemporaryDir dir;
    QSettings settings(dir.filePath(QStringLiteral("defaults.ini")), QSettings::IniFormat);
    SwitchableNetworkAccess network;
    NotificationCenter center;

    HostSetup setup;
    setup.baseUrl = server.baseUrl();
    setup.certificatePem = server.certificatePem();
    for (const DemoUser &user : server.users()) {
        if (user.canSignIn)
            setup.workers.append({user.id, user.name, user.icon, QStringLiteral("Field worker")});
    }
    for (const DemoTask &task : data.tasks)
        setup.tasks.append({task.id, task.name, task.assignedUserId});
    auto window = std::make_unique<DemoHostWindow>(
        setup, DemoHostWindow::Environment{&settings, &network, &center, systemClock()});
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));

    test::UiMonkey monkey(window.get(), seed);
    test::UiMonkey::Report report;
    // In stretches, so that a long walk shows how far it got.
    for (int done = -1; report.actions < actions && report.actions > done;) {
        done = report.actions;
        monkey.run(std::min(progressEvery, actions - report.actions), report);
        std::printf("UI monkey: %s\n", qPrintable(test::UiMonkey::describe(report)));
        std::fflush(stdout);
    }
    QCOMPARE(report.actions, actions);

    window.reset();
    QTest::qWait(50); // what the window left for later goes before the server
}

QTEST_MAIN(TestUiMonkey)
#include "tst_uimonkey.moc"
