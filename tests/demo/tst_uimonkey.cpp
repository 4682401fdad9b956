#include "uimonkey.h"

#include "demorig.h"

#include <QTest>

#include <cstdio>

using namespace ravelin;

namespace {

// A short walk with a fixed seed; scripts/monkey runs long ones under the
// sanitizers with RAVELIN_MONKEY_SEED and RAVELIN_MONKEY_ACTIONS.
constexpr quint32 defaultSeed = 20261120;
constexpr int defaultActions = 300;
constexpr int progressEvery = 1000;

// A positive number from the environment, else the default.
quint32 fromEnvironment(const char *name, quint32 fallback)
{
    bool ok = false;
    const quint32 value = qEnvironmentVariable(name).toUInt(&ok);
    return ok && value > 0 ? value : fallback;
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
    const quint32 seed = fromEnvironment("RAVELIN_MONKEY_SEED", defaultSeed);
    const int actions = int(fromEnvironment("RAVELIN_MONKEY_ACTIONS", defaultActions));
    std::printf("UI monkey: seed %u, %d actions (replay with RAVELIN_MONKEY_SEED=%u RAVELIN_MONKEY_ACTIONS=%d)\n", seed,
                actions, seed, actions);
    std::fflush(stdout);

    test::DemoRig rig;
    QVERIFY(rig.server.start(0));
    auto window = std::make_unique<DemoHostWindow>(rig.setup(), rig.environment());
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
