// Kills a process that writes and sends results at random points, again and
// again, and checks that the outbox and the loopback server end up with every
// result it said was saved, and every comment once.

#include "outboxserver.h"
#include "support/outboxresults.h"
#include "support/outboxrig.h"
#include "support/testpicker.h"

#include <QGuiApplication>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

#include <cstdio>

using namespace ravelin;
using namespace std::chrono;

namespace {

constexpr qint64 user = 7;
constexpr int runs = 100;
constexpr int resultsPerRun = 4;
constexpr int killWindowMs = 150; // a kill comes this long after start-up at most

void say(const QString &line)
{
    std::fputs(qPrintable(line + QLatin1Char('\n')), stdout);
    std::fflush(stdout);
}

// The status id of a result names it on the server: results are told apart by it.
OutboxEntry makeResult(int run, int i, TimePoint now, QByteArray &picture)
{
    const QString key = QStringLiteral("r%1-%2").arg(run).arg(i);
    const qint64 task = 1 + i % 3;
    const qint64 statusId = 1000 + run * resultsPerRun + i;
    const auto kind = OutboxEntry::Kind((run + i) % 4);
    picture = kind == OutboxEntry::Kind::itemsUpdate || kind == OutboxEntry::Kind::comment ? "jpeg" : "";
    return test::sampleResult(kind, user, task, key, statusId, now);
}

// The child: writes its results a few milliseconds apart while it sends; says
// "saved <key>" once a result has committed, and "done" when all is sent.
int runChild(const QStringList &args)
{
    const QString folder = args.at(2);
    const QString baseUrl = args.at(3);
    const int run = args.at(4).toInt();
    const int count = args.at(5).toInt();

    test::OutboxRig rig(folder, baseUrl);
    rig.encodesPictures = false;
    rig.say = say;
    if (!rig.store.isOpen())
        return 2;
    OutboxSender &sender = rig.sender;
    sender.setBackoff({milliseconds(10), milliseconds(50)});
    QObject::connect(&sender, &OutboxSender::entryChanged, [](qint64 id, OutboxEntry::State state) {
        say(QStringLiteral("state %1 %2").arg(id).arg(OutboxEntry::stateName(state)));
    });
    int written = 0;
    QObject::connect(&sender, &OutboxSender::idle, [&] {
        if (written == count && sender.counts().waiting == 0) {
            say(QStringLiteral("done"));
            QCoreApplication::quit();
        }
    });
    QTimer writer;
    writer.setInterval(2);
    QObject::connect(&writer, &QTimer::timeout, [&] {
        if (written == count) {
            writer.stop();
            sender.syncNow();
            return;
        }
        QByteArray picture;
        OutboxEntry result = makeResult(run, written, system_clock::now(), picture);
        const std::optional<OutboxEntry> saved
            = picture.isEmpty() ? sender.add(result) : sender.add(result, test::solidPicture());
        if (saved)
            say(QStringLiteral("saved r%1-%2").arg(run).arg(written));
        ++written;
    });
    sender.setUserId(user);
    say(QStringLiteral("ready"));
    writer.start();
    return QCoreApplication::exec();
}

} // namespace

class TestOutboxKill : public QObject
{
    Q_OBJECT

private slots:
    void nothingLostNothingTwice();
};

void TestOutboxKill::nothingLostNothingTwice()
{
    test::TestServer server;
    test::OutboxServer results(server);
    QTemporaryDir dir;
    QSet<QString> saved;
    QMap<QString, int> killPoints;

    auto startChild = [&](QProcess &child, int run, int count) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), dir.path());
        environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("ravelin.*.debug=false"));
        child.setProcessEnvironment(environment);
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(
            QCoreApplication::applicationFilePath(),
            {QStringLiteral("--child"), dir.path(), server.baseUrl(), QString::number(run), QString::number(count)});
        QVERIFY(child.waitForStarted(5000));
    };
    auto collect = [&](QProcess &child) {
        QString last = QStringLiteral("nothing");
        for (const QByteArray &line : child.readAllStandardOutput().split('\n')) {
            if (line.isEmpty())
                continue;
            const QList<QByteArray> words = line.split(' ');
            if (words.first() == "saved")
                saved.insert(QString::fromUtf8(words.at(1)));
            last = QString::fromUtf8(words.first() == "state" ? "state " + words.value(2) : words.first());
        }
        return last;
    };

    for (int run = 0; run < runs; ++run) {
        QProcess child;
        startChild(child, run, resultsPerRun);
        QVERIFY(child.waitForReadyRead(10000));
        QThread::msleep(QRandomGenerator::global()->bounded(killWindowMs));
        child.kill();
        QVERIFY(child.waitForFinished(5000));
        ++killPoints[collect(child)];
    }
    QProcess last;
    startChild(last, runs, 0);
    QVERIFY(last.waitForFinished(20000));
    QCOMPARE(last.exitCode(), 0);
    QCOMPARE(collect(last), QStringLiteral("done"));

    // What the server holds: every saved result, and no comment twice.
    QMap<QString, int> comments;
    QMap<qint64, int> statuses;
    QMap<QString, QString> itemPictures;
    QSet<QString> uploads;
    for (const test::OutboxServer::Received &r : results.received()) {
        if (r.kind == QLatin1String("comment"))
            ++comments[r.body["text"].toString()];
        else if (r.kind == QLatin1String("status"))
            ++statuses[r.body["task_status_id"].toInteger()];
        else if (r.kind == QLatin1String("items"))
            itemPictures[r.body["items"][0]["text"].toString()] = r.body["items"][0]["media_path"].toString();
        else
            uploads.insert(QStringLiteral("uploads/") + r.body["name"].toString());
    }
    int duplicates = 0;
    for (const QString &key : std::as_const(saved)) {
        const int run = key.section(QLatin1Char('-'), 0, 0).mid(1).toInt();
        const int i = key.section(QLatin1Char('-'), 1).toInt();
        const qint64 statusId = 1000 + run * resultsPerRun + i;
        switch ((run + i) % 4) {
        case 0: QVERIFY2(statuses.value(statusId) >= 1, qPrintable(key)); break;
        case 1: QVERIFY2(uploads.contains(itemPictures.value(key)), qPrintable(key)); break;
        case 2: QVERIFY2(comments.value(key) == 1, qPrintable(key)); break;
        default:
            QVERIFY2(comments.value(key) == 1, qPrintable(key));
            QVERIFY2(statuses.value(statusId) >= 1, qPrintable(key));
        }
        duplicates += std::max(0, statuses.value(statusId) - 1);
    }
    for (auto count = comments.cbegin(); count != comments.cend(); ++count)
        QVERIFY2(count.value() == 1, qPrintable(count.key()));

    SqliteOfflineStore store(dir.filePath(QStringLiteral("store")));
    QVERIFY(store.entries(user).isEmpty());
    QVERIFY(QDir(store.pictureFolder()).entryList(QDir::Files).isEmpty());
    qInfo().noquote() << runs << "kills;" << saved.size() << "results saved, all on the server;" << comments.size()
                      << "comments, each once;" << duplicates << "idempotent updates repeated; killed after:";
    for (auto point = killPoints.cbegin(); point != killPoints.cend(); ++point)
        qInfo().noquote() << "  " << point.key() << point.value();
}

int main(int argc, char **argv)
{
    QGuiApplication app(argc, argv);
    if (argc >= 6 && qstrcmp(argv[1], "--child") == 0)
        return runChild(app.arguments());
    TestOutboxKill test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_outboxkill.moc"
