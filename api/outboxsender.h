#pragma once

#include "api/networkmanager.h"
#include "api/offlinestore.h"
#include "api/outboxentry.h"
#include "api/pendingresults.h"

#include <QImage>
#include <QNetworkInformation>
#include <QObject>
#include <QSet>
#include <QTimer>

#include <chrono>
#include <optional>

namespace ravelin {

// Sends the outbox of the signed-in user, on the main thread, through the
// network manager's routes. Results of one task go in the order they were made;
// tasks go side by side. Pictures go to the host's uploadImage first and their
// server path is committed before the request that names it.
//
// A transport failure, a time-out, a server error or a missing session leaves
// the result waiting and retries with back-off. A refusal (4xx other than 401,
// 408 and 429) moves the result whole to "Not sent" with the server's reason;
// the task's later results still go. A comment is marked attempted in its own
// commit before its request; a comment found attempted is first looked for in
// the task's thread (same user, same `date_created` in ms, same text), so that
// an answer lost on the way never makes it twice.
class OutboxSender : public QObject
{
    Q_OBJECT

public:
    struct Backoff
    {
        std::chrono::milliseconds first = std::chrono::seconds(2);
        std::chrono::milliseconds max = std::chrono::minutes(5);
    };

    // Neither the store nor the manager is owned.
    OutboxSender(OfflineStore *store, NetworkManager *manager, QObject *parent = nullptr);

    // The signed-in user: only their results are sent, with their session. None
    // stops sending; results stay in the store for when the user signs in again.
    [[nodiscard]] std::optional<qint64> userId() const { return m_userId; }
    void setUserId(std::optional<qint64> userId);

    [[nodiscard]] Backoff backoff() const { return m_backoff; }
    void setBackoff(Backoff backoff) { m_backoff = backoff; }

    // Sends again when the network comes back online (not owned; may be none).
    void followReachability(QNetworkInformation *information);

    // Writes a result with its picture (JPEG bytes, or a picture to encode). When
    // this answers the committed entry the result is saved; nothing otherwise.
    std::optional<OutboxEntry> add(OutboxEntry entry, const QByteArray &jpeg = {});
    std::optional<OutboxEntry> add(OutboxEntry entry, const QImage &picture);

    // The signed-in user's results still waiting or refused, in order.
    [[nodiscard]] QList<OutboxEntry> entries() const;
    [[nodiscard]] OfflineStore::Counts counts() const { return m_counts; }
    // What those results change on the screens: statuses, marks, comments.
    [[nodiscard]] PendingResults pending() const { return PendingResults(entries()); }
    // A result's picture as it was written (JPEG bytes; empty without one).
    [[nodiscard]] QByteArray picture(qint64 id) const;
    // Nothing in flight and nothing due.
    [[nodiscard]] bool isIdle() const { return m_busyTasks.isEmpty() && !m_retryTimer.isActive(); }

public slots:
    // Sends what is waiting now, without waiting for the back-off.
    void syncNow();
    // A refused result the worker sends again, or discards.
    bool retry(qint64 id);
    bool discard(qint64 id);

signals:
    // One row's new state; `sent` means it has left the outbox.
    void entryChanged(qint64 id, ravelin::OutboxEntry::State state);
    void countsChanged(int waiting, int refused);
    // Everything sendable has been sent or refused; what is left waits for a retry.
    void idle();

private:
    void schedulePump();
    void pump();
    void advance(const OutboxEntry &entry);
    void upload(OutboxEntry entry);
    void lookForComment(const OutboxEntry &entry);
    void postComment(OutboxEntry entry);
    void sendRoute(const OutboxEntry &entry, const Router &route);
    void answered(const OutboxEntry &entry, const Result<NetworkManager::RouteAnswer> &result);
    void stepDone(OutboxEntry entry);
    void refuse(OutboxEntry entry, const QString &reason);
    void retryLater(OutboxEntry entry, const QString &why);
    void taskFinished(qint64 taskId);
    bool commit(const OutboxEntry &entry);
    void refreshCounts();
    [[nodiscard]] bool belongsToSession(const OutboxEntry &entry) const;

    OfflineStore *m_store = nullptr;
    NetworkManager *m_manager = nullptr;
    std::optional<qint64> m_userId;
    Backoff m_backoff;
    QSet<qint64> m_busyTasks; // a request of the task is under way
    QSet<qint64> m_pausedTasks; // the task failed and waits for the retry timer
    QTimer m_retryTimer;
    int m_failuresInARow = 0;
    bool m_pumpScheduled = false;
    OfflineStore::Counts m_counts;
};

} // namespace ravelin
