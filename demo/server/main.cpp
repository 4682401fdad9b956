// ravelin-demo-server: the demo deployment on its own, on 127.0.0.1, until killed.

#include "demo/server/demodata.h"
#include "demo/server/demoserver.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QSaveFile>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ravelin-demo-server"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Serves the Ravelin demo deployment over HTTPS on 127.0.0.1."));
    parser.addHelpOption();
    const QCommandLineOption portOption(QStringLiteral("port"),
                                        QStringLiteral("Port to listen on; 0 picks a free one."), QStringLiteral("N"),
                                        QStringLiteral("0"));
    parser.addOption(portOption);
    const QCommandLineOption tasksOption(
        QStringLiteral("tasks"),
        QStringLiteral("Tasks per field worker: a deployment at scale (default: the seeded ten)."), QStringLiteral("N"),
        QStringLiteral("0"));
    parser.addOption(tasksOption);
    const QCommandLineOption itemsOption(
        QStringLiteral("items"),
        QStringLiteral("Checkpoints of each field worker's first task in progress: a checklist at scale."),
        QStringLiteral("N"), QStringLiteral("0"));
    parser.addOption(itemsOption);
    const QCommandLineOption commentsOption(
        QStringLiteral("comments"),
        QStringLiteral("Comments on each field worker's first task in progress, every fifth with a picture."),
        QStringLiteral("N"), QStringLiteral("0"));
    parser.addOption(commentsOption);
    const QCommandLineOption certificateOption(
        QStringLiteral("write-certificate"),
        QStringLiteral("Writes the server's certificate (PEM) to FILE once it listens, for a host that checks it "
                       "(ravelin-demo --ca-certificate FILE)."),
        QStringLiteral("FILE"));
    parser.addOption(certificateOption);
    parser.process(app);

    bool valid = false;
    const uint port = parser.value(portOption).toUInt(&valid);
    if (!valid || port > 65535) {
        std::fprintf(stderr, "Invalid port: %s\n", qPrintable(parser.value(portOption)));
        return 2;
    }

    const int tasks = parser.value(tasksOption).toInt(&valid);
    if (!valid || tasks < 0) {
        std::fprintf(stderr, "Invalid number of tasks: %s\n", qPrintable(parser.value(tasksOption)));
        return 2;
    }

    const int items = parser.value(itemsOption).toInt(&valid);
    if (!valid || items < 0) {
        std::fprintf(stderr, "Invalid number of items: %s\n", qPrintable(parser.value(itemsOption)));
        return 2;
    }
    const int comments = parser.value(commentsOption).toInt(&valid);
    if (!valid || comments < 0) {
        std::fprintf(stderr, "Invalid number of comments: %s\n", qPrintable(parser.value(commentsOption)));
        return 2;
    }

    const ravelin::DemoClock clock = ravelin::systemDemoClock();
    ravelin::DemoData data = ravelin::DemoData::seeded(clock(), tasks);
    data.scaleFirstTasksInProgress(items, comments, clock());
    ravelin::DemoServer server(std::move(data), clock);
    if (!server.start(static_cast<quint16>(port))) {
        std::fprintf(stderr, "Could not listen on 127.0.0.1:%u\n", port);
        return 1;
    }
    if (parser.isSet(certificateOption)) {
        QSaveFile file(parser.value(certificateOption));
        if (!file.open(QIODevice::WriteOnly) || file.write(server.certificatePem()) < 0 || !file.commit()) {
            std::fprintf(stderr, "Could not write the certificate to %s: %s\n",
                         qPrintable(parser.value(certificateOption)), qPrintable(file.errorString()));
            return 1;
        }
    }
    std::printf("Ravelin demo server listening on https://%s\n", qPrintable(server.baseUrl()));
    std::fflush(stdout);
    return QCoreApplication::exec();
}
