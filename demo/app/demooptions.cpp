#include "demo/app/demooptions.h"

#include <QLocale>
#include <QProcessEnvironment>

namespace ravelin {

namespace {

using Parsed = Result<DemoOptions, QString>;

// "--name value" or "--name=value"; moves `index` past what it used.
std::optional<QString> valueOf(const QStringList &arguments, qsizetype &index, const QString &name, QString &error)
{
    const QString &argument = arguments.at(index);
    if (argument.startsWith(name + QLatin1Char('=')))
        return argument.mid(name.size() + 1);
    if (index + 1 >= arguments.size() || arguments.at(index + 1).startsWith(QLatin1String("--"))) {
        error = QStringLiteral("%1 needs a value").arg(name);
        return std::nullopt;
    }
    return arguments.at(++index);
}

bool isOption(const QString &argument, const QString &name)
{
    return argument == name || argument.startsWith(name + QLatin1Char('='));
}

// "--name N" with N a whole number from 0; `what` names what is counted.
std::optional<QString> readCount(const QStringList &arguments, qsizetype &index, const QString &name,
                                 const QString &what, int &count)
{
    QString error;
    const auto value = valueOf(arguments, index, name, error);
    if (!value)
        return error;
    bool valid = false;
    count = value->toInt(&valid);
    if (!valid || count < 0)
        return QStringLiteral("%1 takes a number of %2, not \"%3\"").arg(name, what, *value);
    return std::nullopt;
}

bool isHostAndPort(const QString &text)
{
    const qsizetype colon = text.lastIndexOf(QLatin1Char(':'));
    if (colon <= 0 || text.contains(QLatin1Char('/')) || text.contains(QLatin1String("://")))
        return false;
    bool valid = false;
    const uint port = text.mid(colon + 1).toUInt(&valid);
    return valid && port > 0 && port <= 65535;
}

} // namespace

bool DemoOptions::Display::isAvailable() const
{
    if (qpaPlatform.trimmed().startsWith(QLatin1String("offscreen")))
        return false;
    return !display.isEmpty() || !waylandDisplay.isEmpty();
}

DemoOptions::Display DemoOptions::Display::fromEnvironment()
{
    const QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    return Display{environment.value(QStringLiteral("DISPLAY")), environment.value(QStringLiteral("WAYLAND_DISPLAY")),
                   environment.value(QStringLiteral("QT_QPA_PLATFORM"))};
}

Parsed DemoOptions::parse(const QStringList &arguments, const Display &display)
{
    DemoOptions options;
    std::optional<QString> token;
    std::optional<QString> userId;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        QString error;
        if (argument == QLatin1String("--help") || argument == QLatin1String("-h")) {
            options.mode = Mode::help;
            return Parsed::success(options);
        }
        if (isOption(argument, QStringLiteral("--tour"))) {
            const auto value = valueOf(arguments, i, QStringLiteral("--tour"), error);
            if (!value || value->isEmpty())
                return Parsed::failure(error.isEmpty() ? QStringLiteral("--tour needs a folder") : error);
            options.mode = Mode::tour;
            options.tourDir = *value;
        } else if (argument == QLatin1String("--load-dashboard")) {
            options.mode = Mode::loadDashboard;
        } else if (isOption(argument, QStringLiteral("--tasks"))) {
            if (const auto refusal
                = readCount(arguments, i, QStringLiteral("--tasks"), QStringLiteral("tasks"), options.tasksPerWorker))
                return Parsed::failure(*refusal);
        } else if (isOption(argument, QStringLiteral("--items"))) {
            if (const auto refusal
                = readCount(arguments, i, QStringLiteral("--items"), QStringLiteral("items"), options.itemsPerTask))
                return Parsed::failure(*refusal);
        } else if (isOption(argument, QStringLiteral("--comments"))) {
            if (const auto refusal = readCount(arguments, i, QStringLiteral("--comments"), QStringLiteral("comments"),
                                               options.commentsPerTask))
                return Parsed::failure(*refusal);
        } else if (isOption(argument, QStringLiteral("--offline-store"))) {
            const auto value = valueOf(arguments, i, QStringLiteral("--offline-store"), error);
            if (!value || value->isEmpty())
                return Parsed::failure(error.isEmpty() ? QStringLiteral("--offline-store needs a folder") : error);
            options.offlineStoreFolder = *value;
        } else if (argument == QLatin1String("--start-offline")) {
            options.startOffline = true;
        } else if (isOption(argument, QStringLiteral("--text-scale"))) {
            const auto value = valueOf(arguments, i, QStringLiteral("--text-scale"), error);
            if (!value)
                return Parsed::failure(error);
            bool valid = false;
            options.textScale = value->toDouble(&valid);
            if (!valid || options.textScale < 1.0 || options.textScale > 3.0)
                return Parsed::failure(
                    QStringLiteral("--text-scale takes a factor from 1 to 3, not \"%1\"").arg(*value));
        } else if (isOption(argument, QStringLiteral("--language"))) {
            const auto value = valueOf(arguments, i, QStringLiteral("--language"), error);
            if (!value)
                return Parsed::failure(error);
            if (QLocale(*value).language() == QLocale::C)
                return Parsed::failure(
                    QStringLiteral("--language takes a language code such as de, not \"%1\"").arg(*value));
            options.language = *value;
        } else if (isOption(argument, QStringLiteral("--ca-certificate"))) {
            const auto value = valueOf(arguments, i, QStringLiteral("--ca-certificate"), error);
            if (!value || value->isEmpty())
                return Parsed::failure(error.isEmpty() ? QStringLiteral("--ca-certificate needs a file") : error);
            options.caCertificateFile = *value;
        } else if (isOption(argument, QStringLiteral("--api-host"))) {
            const auto value = valueOf(arguments, i, QStringLiteral("--api-host"), error);
            if (!value)
                return Parsed::failure(error);
            if (!isHostAndPort(*value))
                return Parsed::failure(
                    QStringLiteral("--api-host takes HOST:PORT without a scheme, not \"%1\"").arg(*value));
            options.apiHost = *value;
        } else if (isOption(argument, QStringLiteral("--token"))) {
            token = valueOf(arguments, i, QStringLiteral("--token"), error);
            if (!token || token->isEmpty())
                return Parsed::failure(error.isEmpty() ? QStringLiteral("--token needs a value") : error);
        } else if (isOption(argument, QStringLiteral("--user-id"))) {
            userId = valueOf(arguments, i, QStringLiteral("--user-id"), error);
            if (!userId)
                return Parsed::failure(error);
        } else {
            return Parsed::failure(QStringLiteral("Unknown argument \"%1\"").arg(argument));
        }
    }

    if (options.apiHost && (options.tasksPerWorker > 0 || options.itemsPerTask > 0 || options.commentsPerTask > 0))
        return Parsed::failure(
            QStringLiteral("--tasks, --items and --comments are for the embedded demo server, not for --api-host"));
    if (options.apiHost) {
        if (!token || !userId)
            return Parsed::failure(QStringLiteral("--api-host needs --token and --user-id as well"));
        bool valid = false;
        options.userId = userId->toLongLong(&valid);
        if (!valid)
            return Parsed::failure(QStringLiteral("--user-id takes a whole number, not \"%1\"").arg(*userId));
        options.token = *token;
    } else if (token || userId) {
        return Parsed::failure(QStringLiteral("--token and --user-id go with --api-host"));
    }

    if (options.mode == Mode::window && !display.isAvailable()) {
        options.mode = Mode::tour;
        options.tourDir = defaultTourDir;
        options.tourForcedByDisplay = true;
    }
    return Parsed::success(options);
}

QString DemoOptions::usage()
{
    return QStringLiteral("Usage: ravelin-demo [--tour OUTDIR | --load-dashboard] [--tasks N] [--items N]\n"
                          "                    [--comments N] [--text-scale F] [--language L]\n"
                          "                    [--api-host HOST:PORT --token T --user-id N]\n"
                          "                    [--ca-certificate FILE] [--offline-store FOLDER] [--start-offline]\n"
                          "\n"
                          "Runs the Ravelin task client inside a demo host application.\n"
                          "\n"
                          "Without options it starts the demo server on 127.0.0.1 and opens a phone-sized\n"
                          "window with the host's sign-in screen.\n"
                          "\n"
                          "  --tour OUTDIR        Runs a headless tour (offscreen): signs in, opens the\n"
                          "                       dashboard, acknowledges and starts tasks, posts a task\n"
                          "                       event and the emergency flag; writes NN-step.png pictures\n"
                          "                       and summary.txt to OUTDIR. Chosen automatically, with\n"
                          "                       OUTDIR \"out/tour\", when there is no display.\n"
                          "  --load-dashboard     Signs in, waits until the dashboard shows the worker's\n"
                          "                       tasks, prints how long that took and the process's peak\n"
                          "                       resident memory, and exits (offscreen without a display).\n"
                          "  --tasks N            Gives every field worker of the embedded demo server N\n"
                          "                       tasks: the dashboard at scale.\n"
                          "  --items N            Gives every field worker's first task in progress N\n"
                          "                       checkpoints: the checklist at scale.\n"
                          "  --comments N         Gives every field worker's first task in progress N\n"
                          "                       comments, every fifth with a picture: the thread at scale.\n"
                          "                       With --items or --comments the tour also opens that task\n"
                          "                       and a small one and reports how long each took to show.\n"
                          "  --text-scale F       Enlarges the system font by the factor F (1 to 3), as a\n"
                          "                       worker who needs large text does: --text-scale 1.5.\n"
                          "  --language L         Shows the library's texts in the language L (de: German).\n"
                          "  --api-host HOST:PORT Uses another server that speaks the same API instead of\n"
                          "                       the demo server; no sign-in request is made.\n"
                          "  --token T            The bearer token for --api-host.\n"
                          "  --user-id N          The signed-in user for --api-host.\n"
                          "  --ca-certificate FILE\n"
                          "                       Lets the library trust only the certificates in FILE\n"
                          "                       (PEM), as a deployment that checks its server does:\n"
                          "                       the one ravelin-demo-server --write-certificate wrote.\n"
                          "                       Without it any certificate is accepted.\n"
                          "  --offline-store FOLDER\n"
                          "                       Keeps the task client's offline store (the answers it\n"
                          "                       shows without a connection and the results still to\n"
                          "                       send) in FOLDER across runs. Without it every run starts\n"
                          "                       with an empty store in a folder of its own.\n"
                          "  --start-offline      Starts with the host's network off, as the \"Offline\"\n"
                          "                       switch of the host bar and sign-in screen turns it off:\n"
                          "                       every request fails at once. Switched back on, the task\n"
                          "                       client sends what waited.\n"
                          "  -h, --help           Shows this text.\n");
}

} // namespace ravelin
