#include "comments/elapsedtime.h"
#include "host/navigationbar.h"
#include "host/notificationcenter.h"
#include "host/ravelineventvc.h"
#include "host/taskupdateevent.h"
#include "host/translations.h"
#include "items/itemstexts.h"
#include "support/fixtures.h"
#include "support/hostfixture.h"
#include "tasks/dashboardtexts.h"

#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTranslator>
#include <QXmlStreamReader>

using namespace ravelin;
using namespace ravelin::test;

namespace {

// Texts put together from pieces, where a translation has to keep its
// placeholders and the English text its exact spacing.
QStringList composedTexts()
{
    const QDateTime now(QDate(2026, 11, 23), QTime(12, 0), Qt::UTC);
    Task assigned;
    assigned.name = QStringLiteral("Meter");
    assigned.currentStatus = TaskStatus::assigned;
    return {DashboardTexts::sectionHeader(TaskStatus::in_progress, 2),
            DashboardTexts::statusPrompt(assigned).value_or(StatusPrompt{}).title,
            ItemsTexts::taskBlocked(QStringLiteral("Meter")).message,
            ItemsTexts::totalText(4),
            elapsedTimeText(now.addDays(-3), now),
            elapsedTimeText(now.addSecs(-60), now)};
}

struct Message
{
    QString context;
    QString source;
    QString translation;
    QString type;
};

QList<Message> readCatalogue(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<Message> messages;
    QString context;
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("message")) {
            messages.append(Message{context, {}, {}, {}});
        } else if (xml.name() == QLatin1String("source") && !messages.isEmpty()) {
            messages.last().source = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation") && !messages.isEmpty()) {
            messages.last().type = xml.attributes().value(QLatin1String("type")).toString();
            messages.last().translation = xml.readElementText();
        }
    }
    return xml.hasError() ? QList<Message>{} : messages;
}

QStringList placeholders(const QString &text)
{
    QStringList found;
    static const QRegularExpression marker(QStringLiteral("%\\d"));
    for (auto it = marker.globalMatch(text); it.hasNext();)
        found.append(it.next().captured());
    found.sort();
    return found;
}

} // namespace

class TestTranslations : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void englishUnlessGermanIsInstalled();
    void germanScreensAndAlerts();
    void catalogueIsCompleteAndCurrent();

private:
    QTranslator *m_translator = nullptr;
};

void TestTranslations::cleanup()
{
    if (m_translator) {
        QCoreApplication::removeTranslator(m_translator);
        delete m_translator;
        m_translator = nullptr;
    }
}

void TestTranslations::englishUnlessGermanIsInstalled()
{
    // The English texts themselves are checked with their screens.
    const QStringList english = composedTexts();
    // No catalogue for English or for a language without one: English stays.
    QCOMPARE(installTranslator(QLocale(QLocale::English, QLocale::UnitedStates)), nullptr);
    QCOMPARE(installTranslator(QLocale(QLocale::Japanese)), nullptr);
    QCOMPARE(DashboardTexts::refreshTitle(), QStringLiteral("Fetching Task Data ..."));

    m_translator = installTranslator(QLocale(QLocale::German, QLocale::Austria));
    QVERIFY(m_translator);
    QCOMPARE(composedTexts(),
             (QStringList{"IN ARBEIT (2 Aufgabe)", "Aufgabe `Meter` bestätigen",
                          "\n  Der Status der Aufgabe Meter wurde in `Blockiert` geändert\n ", "4 gesamt",
                          "vor 3 Tagen", "vor 1 Minute"}));
    // The values sent to the server never change with the language.
    QCOMPARE(TaskStatuses::rawValue(TaskStatus::in_progress), QStringLiteral("In Progress"));
    QCOMPARE(ItemStatuses::rawValue(ItemStatus::nok), QStringLiteral("Incidents"));

    cleanup();
    QCOMPARE(composedTexts(), english);
}

void TestTranslations::germanScreensAndAlerts()
{
    m_translator = installTranslator(QLocale(QLocale::German));
    QVERIFY(m_translator);
    Settings::setCurrent(Settings::defaults());
    ApiHarness api;
    api.server.on("GET", "/api/tasks/assigned-user/7",
                  CannedResponse{200, answer(QJsonArray{taskJson(1, "Meter", 4)})});
    NotificationCenter center;
    const auto owned = makeHost(api, center, HostOptions{.size = {390, 780}});
    RavelinNavVC &host = *owned;

    QCOMPARE(host.navigationBar()->title(), QStringLiteral("Aufgabenübersicht"));
    QVERIFY(waitForDashboard(host, 1));

    host.push(new TaskScreen(1));
    center.post(NotificationNames::taskEvent, taskEvent(1, QStringLiteral("Meter"), TaskUpdateEventType::kDeleted));
    AlertView *alert = AlertPresenter::visibleAlert(&host);
    QVERIFY(alert);
    QCOMPARE(alert->title(), QStringLiteral("Aufgabe aktualisiert"));
    QCOMPARE(alert->message(), QStringLiteral("Meter\nAufgabe gelöscht."));
    Settings::setCurrent(Settings::defaults());
}

void TestTranslations::catalogueIsCompleteAndCurrent()
{
    const QString shipped = QStringLiteral(RAVELIN_SOURCE_DIR "/resources/translations/ravelin_de.ts");
    const QList<Message> messages = readCatalogue(shipped);
    QVERIFY(messages.size() > 100);
    for (const Message &m : messages) {
        const QString where = m.context + QStringLiteral(": ") + m.source;
        QVERIFY2(m.type.isEmpty() && !m.translation.isEmpty(), qPrintable(where + QStringLiteral(" is ") + m.type));
        QVERIFY2(placeholders(m.source) == placeholders(m.translation), qPrintable(where));
    }

    // Reading the code again finds exactly the texts the catalogue holds.
    QTemporaryDir dir;
    const QString fresh = dir.filePath(QStringLiteral("ravelin_de.ts"));
    QProcess lupdate;
    lupdate.setWorkingDirectory(QStringLiteral(RAVELIN_SOURCE_DIR));
    lupdate.start(QStringLiteral(RAVELIN_LUPDATE),
                  {"-silent", "-locations", "none", "-I", ".", "api", "tasks", "items", "comments", "filter", "host",
                   "views", "resources", "-ts", fresh});
    QVERIFY(lupdate.waitForFinished(60000));
    QCOMPARE(lupdate.exitCode(), 0);
    QSet<QString> inCode;
    for (const Message &m : readCatalogue(fresh))
        inCode.insert(m.context + QLatin1Char('|') + m.source);
    QSet<QString> inCatalogue;
    for (const Message &m : messages)
        inCatalogue.insert(m.context + QLatin1Char('|') + m.source);
    QCOMPARE(inCode - inCatalogue, QSet<QString>{});
    QCOMPARE(inCatalogue - inCode, QSet<QString>{});
}

QTEST_MAIN(TestTranslations)
#include "tst_translations.moc"
