#pragma once

#include "api/result.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace ravelin {

// The demo host's command line:
//   ravelin-demo [--tour OUTDIR | --load-dashboard] [--tasks N] [--items N] [--comments N]
//                [--text-scale F] [--language L] [--api-host HOST:PORT --token T --user-id N]
//                [--ca-certificate FILE] [--offline-store FOLDER] [--start-offline]
// Without a display (no DISPLAY and no WAYLAND_DISPLAY, or the offscreen
// platform) the tour runs even when it was not asked for.
struct DemoOptions
{
    enum class Mode { window, tour, loadDashboard, help };

    // What the process was started in, as far as the choice of mode goes.
    struct Display
    {
        QString display; // DISPLAY
        QString waylandDisplay; // WAYLAND_DISPLAY
        QString qpaPlatform; // QT_QPA_PLATFORM

        [[nodiscard]] bool isAvailable() const;
        [[nodiscard]] static Display fromEnvironment();
    };

    static inline const QString defaultTourDir = QStringLiteral("out/tour");

    Mode mode = Mode::window;
    QString tourDir;
    // --api-host: a server that speaks the same API, with a ready session.
    std::optional<QString> apiHost;
    QString token;
    qint64 userId = 0;
    // The tour was chosen because there is no display.
    bool tourForcedByDisplay = false;
    // --tasks: tasks per field worker on the embedded demo server (0: the seeded ones).
    int tasksPerWorker = 0;
    // --items, --comments: checkpoints and comments of each field worker's first
    // task in progress on the embedded demo server (0: as seeded).
    int itemsPerTask = 0;
    int commentsPerTask = 0;
    // --text-scale: the system font enlarged by this factor, as a worker who
    // needs large text sets it (1: as it is).
    qreal textScale = 1.0;
    // --language: the language code of the library's texts (empty: the system's).
    QString language;
    // --ca-certificate: a PEM file whose certificates are the only ones the
    // library trusts (empty: it accepts any certificate).
    QString caCertificateFile;
    // --offline-store: the folder of the library's offline store, kept across
    // runs (empty: a new folder for this run, removed at its end).
    QString offlineStoreFolder;
    // --start-offline: the host's network is off from the start.
    bool startOffline = false;

    // `arguments` without the program name.
    [[nodiscard]] static Result<DemoOptions, QString> parse(const QStringList &arguments, const Display &display);
    [[nodiscard]] static QString usage();
};

} // namespace ravelin
