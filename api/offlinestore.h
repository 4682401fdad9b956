#pragma once

#include "api/clock.h"
#include "api/outboxentry.h"

#include <QByteArray>
#include <QList>
#include <QLoggingCategory>
#include <QString>

#include <optional>

namespace ravelin {

Q_DECLARE_LOGGING_CATEGORY(lcOffline) // "ravelin.offline": the offline store and the outbox

// Where the library keeps what must survive without a connection: the last
// answers of the signed-in user (to open screens offline) and the outbox of
// results not yet on the server. A host option: without a store the library
// works online only. The store is used from one thread, the one that made it.
class OfflineStore
{
public:
    // One kept answer: its raw bytes and when it was fetched.
    struct CachedAnswer
    {
        QByteArray body;
        TimePoint fetchedAt;
    };

    virtual ~OfflineStore() = default;

    // False when the store could not be opened or migrated; nothing is kept then.
    [[nodiscard]] virtual bool isOpen() const = 0;

    // The cache, keyed by user and route (a route's path and query, e.g.
    // "api/items/taskId/7"). A later answer replaces an earlier one.
    virtual bool storeAnswer(qint64 userId, const QString &route, const QByteArray &body, TimePoint fetchedAt) = 0;
    [[nodiscard]] virtual std::optional<CachedAnswer> cachedAnswer(qint64 userId, const QString &route) const = 0;

    // Writes a result and its picture (JPEG bytes, empty for none) in one
    // transaction; answers the committed entry with its id, or nothing when
    // nothing was written. The entry counts as saved only once this returns.
    [[nodiscard]] virtual std::optional<OutboxEntry> add(OutboxEntry entry, const QByteArray &picture) = 0;
    // The user's rows still to be sent or refused, in the order they were made.
    [[nodiscard]] virtual QList<OutboxEntry> entries(qint64 userId) const = 0;
    [[nodiscard]] virtual std::optional<OutboxEntry> entry(qint64 id) const = 0;
    [[nodiscard]] virtual QByteArray picture(const OutboxEntry &entry) const = 0;
    // Commits the entry's progress: state, steps done, media path, attempts, reason.
    // A sent entry leaves the store with its picture.
    virtual bool update(const OutboxEntry &entry) = 0;
    // Drops a result for good (a refused one the worker discards).
    virtual bool remove(qint64 id) = 0;

    struct Counts
    {
        int waiting = 0; // waiting or attempted
        int refused = 0;
        friend bool operator==(const Counts &, const Counts &) = default;
    };
    [[nodiscard]] virtual Counts counts(qint64 userId) const = 0;
};

} // namespace ravelin
