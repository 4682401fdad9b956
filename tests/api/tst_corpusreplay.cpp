#include "fuzz/decodeentry.h"
#include "support/logcapture.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace ravelin;

// Every file of the fuzzers' corpora (fuzz/corpus/<entry>/) goes through its
// decoding entry point as in a fuzzing run: no crash, no sanitizer report, no
// broken decoding rule. A file named "decoded-...", "rejected-..." or
// "stopped-..." must also keep that outcome.
class TestCorpusReplay : public QObject
{
    Q_OBJECT

private slots:
    void replay_data();
    void replay();
};

void TestCorpusReplay::replay_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("path");
    const QDir corpus(QStringLiteral(RAVELIN_FUZZ_CORPUS_DIR));
    for (fuzz::DecodeEntry entry : fuzz::allEntries()) {
        const QString name = fuzz::entryName(entry);
        const QDir folder(corpus.filePath(name));
        const QStringList files = folder.entryList(QDir::Files, QDir::Name);
        QVERIFY2(!folder.entryList({QStringLiteral("decoded-*")}, QDir::Files).isEmpty(),
                 qPrintable(name + QStringLiteral(" has no seed that decodes")));
        for (const QString &file : files)
            QTest::newRow(qPrintable(name + QLatin1Char('/') + file)) << name << folder.filePath(file);
    }
}

void TestCorpusReplay::replay()
{
    QFETCH(QString, entry);
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    test::LogCapture quiet;

    const fuzz::Verdict verdict = fuzz::decode(*fuzz::entryNamed(entry), bytes);
    QVERIFY2(!verdict.violation, qPrintable(verdict.violation.value_or(QString())));
    const QString named = QFileInfo(path).fileName().section(QLatin1Char('-'), 0, 0);
    if (QStringList{"decoded", "rejected", "stopped"}.contains(named))
        QCOMPARE(fuzz::outcomeName(verdict.outcome), named);
}

QTEST_GUILESS_MAIN(TestCorpusReplay)
#include "tst_corpusreplay.moc"
