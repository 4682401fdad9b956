#include "api/debuglog.h"
#include "api/sessionstore.h"
#include "support/logcapture.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace ravelin;
using namespace ravelin::test;

class TestDebugLog : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QLoggingCategory::setFilterRules(QString()); }
    void linesGoToTheirSubsystem();
    void hostsFilterByRules_data();
    void hostsFilterByRules();
};

void TestDebugLog::linesGoToTheirSubsystem()
{
    // A line of the session store, written where the library writes it.
    QTemporaryDir dir;
    QSettings settings(dir.filePath(QStringLiteral("s.ini")), QSettings::IniFormat);
    SessionStore store(&settings);
    LogCapture log;
    QVERIFY(!store.load());
    QCOMPARE(log.lines(), QStringList{"Couldnt find key"});
    QCOMPARE(log.categories(), QStringList{"ravelin.api"});
    debugLog(lcItems, QStringLiteral("Route response: "), QStringLiteral("200"));
    QCOMPARE(log.lines().last(), QStringLiteral("Route response:  200"));
    QCOMPARE(log.categories().last(), QStringLiteral("ravelin.items"));
}

void TestDebugLog::hostsFilterByRules_data()
{
    QTest::addColumn<QString>("rules");
    QTest::addColumn<QStringList>("kept");
    QTest::newRow("no rules") << QString() << QStringList{"ravelin.api", "ravelin.tasks", "ravelin.comments"};
    QTest::newRow("all off") << "ravelin.*.debug=false" << QStringList{};
    QTest::newRow("only the network") << "ravelin.*.debug=false\nravelin.api.debug=true" << QStringList{"ravelin.api"};
}

void TestDebugLog::hostsFilterByRules()
{
    QFETCH(QString, rules);
    QFETCH(QStringList, kept);
    QLoggingCategory::setFilterRules(rules);
    LogCapture log;
    for (const LogCategory category : {lcApi, lcTasks, lcComments})
        debugLog(category, QStringLiteral("line"));
    QCOMPARE(log.categories(), kept);
}

QTEST_GUILESS_MAIN(TestDebugLog)
#include "tst_debuglog.moc"
