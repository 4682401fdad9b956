#pragma once

#include "tasks/task.h"

#include <QDir>
#include <QFile>
#include <QList>
#include <QMetaObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <optional>
#include <stdexcept>

class QPlainTextEdit;

namespace ravelin {

class CommentsVC;
class DashboardVC;
class ItemActionVC;
class ItemsVC;
class DemoHostWindow;
class RavelinNavVC;

// A headless walk through the demo: sign in, the dashboard, acknowledging an
// assigned task, starting an acknowledged one, its items (filtered, one
// completed with a photo, two reported, one found by scanning its QR code),
// its comments, blocking it, narrowing the dashboard to one priority sorted by
// name, the host panel, a task event and the emergency flag. At scale it first
// opens a small task in progress and the biggest one, with their threads, and
// tells how long each took to show and the longest the main thread was held
// up meanwhile. After each step it
// writes a picture of the whole window ("NN-step-name.png") and a one-line summary (to summary.txt and
// standard output). Every wait is bounded; the first step that fails ends the
// tour with its reason. A step can take the host's network away and give it
// back with DemoHostWindow::setOffline(), as the host bar's "Offline" switch does.
class DemoTour
{
public:
    struct Options
    {
        QString outputDir;
        std::chrono::milliseconds stepTimeout{15000};
        // The worker to sign in as; the first one offered when unset.
        std::optional<qint64> workerId;
        // Against the seeded demo data every step must find what it needs;
        // against another server a step without material is skipped.
        bool strict = true;
        // The server has a task with a long checklist or thread: measure opening it.
        bool atScale = false;
    };

    DemoTour(DemoHostWindow *window, Options options);
    ~DemoTour();
    DemoTour(const DemoTour &) = delete;
    DemoTour &operator=(const DemoTour &) = delete;

    // 0 when every step passed, 1 otherwise (the reason is on standard error).
    [[nodiscard]] int run();

    [[nodiscard]] const QStringList &summary() const { return m_summary; }
    [[nodiscard]] QString failure() const { return m_failure; }

private:
    struct StepFailure : std::runtime_error
    {
        explicit StepFailure(const QString &reason)
            : std::runtime_error(reason.toStdString())
        { }
    };

    void stepSignIn();
    void stepDashboard();
    void stepAtScale();
    void stepAcknowledge();
    void stepStart();
    void stepItems();
    void stepItemsFilter();
    void stepItemComplete();
    void stepItemsReport();
    void stepScan();
    void stepComments();
    void stepBlock();
    // Without a connection: a task opened from the cache, results kept in the
    // outbox with their marks, then sent once when the network is back.
    void stepOffline();
    void stepFilter();
    void stepHostPanel();
    void stepTaskEvent();
    void stepEmergency();

    // Spins the event loop until the condition holds; throws with `what` when
    // the step's time runs out.
    ItemsVC &itemsScreen();
    CommentsVC &commentsScreen();
    // Writes a comment (with a photo from the picker) and sends it; waits until it shows.
    void sendComment(const QString &text, bool withPhoto);
    // Blocks the open task with a reason; records the sheet (unless `sheetStep`
    // is empty) and waits for the blocked alert. Answers the alert's message.
    QString blockOpenTask(const QString &sheetStep, const QString &reason);
    // Opens the first open item without a code on the items screen, with a note
    // (and the picker's photo), and completes or reports it. Answers its name.
    QString actOnOpenItem(bool report, const QString &note, bool withPhoto, const QString &step);
    // The offline round's line: the bar's count and band.
    [[nodiscard]] QString barState() const;
    void waitForItems();
    ItemActionVC &actionSheet();
    // Completes or reports from the open action sheet, records the result alert
    // while it shows, and waits for the items to load again.
    void finishItemAction(bool report, const QString &what, const std::function<void(const QString &)> &recordResult);
    static void type(QPlainTextEdit *field, const QString &text);
    // A tap (press and release) at a point of a widget; false when the point is outside it.
    static bool tap(QWidget *widget, QPoint position);
    // How long a screen took to show (until its content is in and painted) and
    // the longest gap between the main thread's turns meanwhile.
    struct Opening
    {
        qint64 shownMs = 0;
        qint64 longestStallMs = 0;
        int picturesFetched = 0; // requests for files under "/files/"
    };
    Opening measureOpening(const QString &what, const std::function<void()> &open, const std::function<bool()> &shown);
    // From the dashboard, the task's checklist; from the checklist, its thread.
    Opening openChecklist(const TaskPtr &task);
    Opening openThread();
    // Posts a comment into the open thread: milliseconds from Send and from the
    // server's answer until the comment is painted as sent.
    std::pair<qint64, qint64> postMeasured(const QString &text);
    void backToDashboard();
    void waitFor(const QString &what, const std::function<bool()> &condition);
    [[nodiscard]] bool waitUntil(const std::function<bool()> &condition, std::chrono::milliseconds timeout);
    void settle(std::chrono::milliseconds duration);
    // Writes the picture and the summary line of the current step.
    void record(const QString &name, const QString &line);
    void skip(const QString &name, const QString &reason);

    [[nodiscard]] RavelinNavVC &navVC() const;
    [[nodiscard]] DashboardVC &dashboard() const;
    [[nodiscard]] bool dashboardIdle() const;
    // Waits for the dashboard's next refresh to end (one that starts after `since`).
    void waitForRefreshAfter(int since, const QString &what);
    [[nodiscard]] TaskPtr findTask(const std::function<bool(const Task &)> &matches) const;
    [[nodiscard]] TaskPtr taskById(qint64 id) const;
    [[nodiscard]] QString sectionsText() const;
    void watchRefreshes();

    QPointer<DemoHostWindow> m_window;
    QList<QMetaObject::Connection> m_connections;
    QString m_currentStep;
    Options m_options;
    QDir m_dir;
    QFile m_summaryFile;
    QStringList m_summary;
    QString m_failure;
    int m_step = 0;
    int m_refreshesEnded = 0;
    bool m_watchingRefreshes = false;
    bool m_signedIn = false;
    qint64 m_acknowledgedTaskId = 0;
    qint64 m_itemsTaskId = 0;
    std::optional<bool> m_lastSwipe;
};

} // namespace ravelin
