#include "api/memoryofflinestore.h"

namespace ravelin {

bool MemoryOfflineStore::storeAnswer(qint64 userId, const QString &route, const QByteArray &body, TimePoint fetchedAt)
{
    if (m_writesFail)
        return false;
    m_cache.insert({userId, route}, CachedAnswer{body, fetchedAt});
    return true;
}

std::optional<OfflineStore::CachedAnswer> MemoryOfflineStore::cachedAnswer(qint64 userId, const QString &route) const
{
    const auto found = m_cache.constFind({userId, route});
    return found == m_cache.cend() ? std::nullopt : std::optional(*found);
}

std::optional<OutboxEntry> MemoryOfflineStore::add(OutboxEntry entry, const QByteArray &picture)
{
    if (m_writesFail)
        return std::nullopt;
    entry.id = ++m_lastId;
    entry.pictureFile.clear();
    if (!picture.isEmpty()) {
        entry.pictureFile = QStringLiteral("picture-%1.jpg").arg(entry.id);
        m_pictures.insert(entry.pictureFile, picture);
    }
    m_entries.insert(entry.id, entry);
    return entry;
}

QList<OutboxEntry> MemoryOfflineStore::entries(qint64 userId) const
{
    QList<OutboxEntry> result;
    for (const OutboxEntry &entry : m_entries) {
        if (entry.userId == userId)
            result.append(entry);
    }
    return result;
}

std::optional<OutboxEntry> MemoryOfflineStore::entry(qint64 id) const
{
    const auto found = m_entries.constFind(id);
    return found == m_entries.cend() ? std::nullopt : std::optional(*found);
}

QByteArray MemoryOfflineStore::picture(const OutboxEntry &entry) const
{
    return m_pictures.value(entry.pictureFile);
}

bool MemoryOfflineStore::update(const OutboxEntry &entry)
{
    if (m_writesFail || !m_entries.contains(entry.id))
        return false;
    if (entry.state == OutboxEntry::State::sent)
        return remove(entry.id);
    OutboxEntry &stored = m_entries[entry.id];
    stored.mediaPath = entry.mediaPath;
    stored.state = entry.state;
    stored.stepsDone = entry.stepsDone;
    stored.attempts = entry.attempts;
    stored.reason = entry.reason;
    return true;
}

bool MemoryOfflineStore::remove(qint64 id)
{
    if (m_writesFail)
        return false;
    if (!m_entries.contains(id))
        return false;
    m_pictures.remove(m_entries.take(id).pictureFile);
    return true;
}

OfflineStore::Counts MemoryOfflineStore::counts(qint64 userId) const
{
    Counts counts;
    for (const OutboxEntry &entry : m_entries) {
        if (entry.userId != userId)
            continue;
        if (entry.isPending())
            ++counts.waiting;
        else if (entry.state == OutboxEntry::State::refused)
            ++counts.refused;
    }
    return counts;
}

} // namespace ravelin
