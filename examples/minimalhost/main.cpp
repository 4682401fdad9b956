// The smallest host of the Ravelin task client: it creates the navigation
// host with the four inputs of a signed-in session, answers the library's
// delegate calls and posts a task event.
//
//   minimalhost HOST:PORT TOKEN USER_ID [--quit-after MS]
//
// It prints every request the library makes, with its answer's status.

#include <host/notificationcenter.h>
#include <host/ravelinnavvc.h>
#include <host/ravelinnavvcdelegate.h>
#include <host/taskupdateevent.h>
#include <host/translations.h>

#include <QApplication>
#include <QDateTime>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSettings>
#include <QTimer>

#include <cstdio>
#include <memory>

namespace {

// What the library tells the host and asks of it.
class Host : public ravelin::RavelinNavVCDelegate
{
public:
    void didSwipe(bool isShown) override { std::printf("didSwipe(isShown: %s)\n", isShown ? "true" : "false"); }
    void sessionExpired() override
    {
        std::printf("sessionExpired: sign in again\n");
        QApplication::exit(1);
    }
    void uploadImage(const QImage &, const QString &fileName, UploadCompletion completion) override
    {
        // A real host stores the picture on its server and answers with its path.
        completion(true, QStringLiteral("uploads/") + fileName);
    }
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    const QStringList args = QApplication::arguments();
    if (args.size() < 4) {
        std::fprintf(stderr, "usage: minimalhost HOST:PORT TOKEN USER_ID [--quit-after MS]\n");
        return 2;
    }
    const qint64 userId = args.at(3).toLongLong();

    QSettings defaults(QStringLiteral("Example"), QStringLiteral("MinimalHost"));
    QNetworkAccessManager network;
    QObject::connect(&network, &QNetworkAccessManager::finished, [](QNetworkReply *reply) {
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        std::printf("%s -> %d\n", qPrintable(reply->url().path()), status);
        std::fflush(stdout);
    });

    // The library's texts in the system's language, where it has a catalogue.
    ravelin::installTranslator(QLocale());

    Host host;
    ravelin::RavelinNavVC::Environment environment;
    environment.userDefaults = &defaults;
    environment.network = &network;
    environment.notifications = &ravelin::NotificationCenter::defaultCenter();
    ravelin::RavelinNavVC nav(environment);
    nav.currentUserId = userId;
    nav.assetsList = QMap<qint64, QStringList>{{userId, {QStringLiteral("Field worker"), QStringLiteral("people_01")}}};
    // The token and when the host got it (here: signed in a moment ago).
    nav.networkData = ravelin::NetworkData{args.at(1), QDateTime::currentDateTimeUtc().addSecs(-1), args.at(2)};
    nav.setVcDelegate(&host);
    nav.resize(390, 844);
    nav.show();

    // A task was assigned to the worker: the library shows it on the visible screen.
    QTimer::singleShot(1000, [] {
        auto event = std::make_shared<ravelin::TaskUpdateEvent>();
        event->id = 1;
        event->name = QStringLiteral("Pump station check");
        event->type = ravelin::TaskUpdateEventType::kAssigned;
        ravelin::NotificationCenter::defaultCenter().post(QStringLiteral("TaskEventNotification"),
                                                          QVariant::fromValue(event));
        std::printf("posted task-assigned for task 1\n");
        std::fflush(stdout);
    });

    const qsizetype quitAt = args.indexOf(QStringLiteral("--quit-after"));
    if (quitAt > 0 && quitAt + 1 < args.size())
        QTimer::singleShot(args.at(quitAt + 1).toInt(), &app, &QApplication::quit);
    return QApplication::exec();
}
