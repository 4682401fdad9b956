#pragma once

#include "api/offlinestore.h"

#include <QHash>
#include <QMap>

namespace ravelin {

// An offline store that keeps everything in memory, for tests and hosts that
// want the outbox without a disk. It forgets everything when it is destroyed.
class MemoryOfflineStore : public OfflineStore
{
public:
    MemoryOfflineStore() = default;

    // Makes every later write fail, as a full disk would.
    void setWritesFail(bool fail) { m_writesFail = fail; }

    [[nodiscard]] bool isOpen() const override { return true; }
    bool storeAnswer(qint64 userId, const QString &route, const QByteArray &body, TimePoint fetchedAt) override;
    [[nodiscard]] std::optional<CachedAnswer> cachedAnswer(qint64 userId, const QString &route) const override;
    [[nodiscard]] std::optional<OutboxEntry> add(OutboxEntry entry, const QByteArray &picture) override;
    [[nodiscard]] QList<OutboxEntry> entries(qint64 userId) const override;
    [[nodiscard]] std::optional<OutboxEntry> entry(qint64 id) const override;
    [[nodiscard]] QByteArray picture(const OutboxEntry &entry) const override;
    bool update(const OutboxEntry &entry) override;
    bool remove(qint64 id) override;
    [[nodiscard]] Counts counts(qint64 userId) const override;

private:
    QHash<std::pair<qint64, QString>, CachedAnswer> m_cache;
    QMap<qint64, OutboxEntry> m_entries; // by id, so in the order they were made
    QHash<QString, QByteArray> m_pictures;
    qint64 m_lastId = 0;
    bool m_writesFail = false;
};

} // namespace ravelin
