#include "host/outboxlistmodel.h"

#include "host/synctexts.h"

#include <QSet>

namespace ravelin {

OutboxListModel::OutboxListModel(QObject *parent)
    : QAbstractListModel(parent)
{ }

void OutboxListModel::setEntries(const QList<OutboxEntry> &entries)
{
    // Rows keep the outbox's order (by id), so one pass merges the two lists.
    QSet<qint64> wanted;
    for (const OutboxEntry &entry : entries)
        wanted.insert(entry.id);
    for (int row = int(m_entries.size()) - 1; row >= 0; --row) {
        if (wanted.contains(m_entries.at(row).id))
            continue;
        beginRemoveRows({}, row, row);
        m_entries.removeAt(row);
        endRemoveRows();
    }
    int row = 0;
    for (const OutboxEntry &entry : entries) {
        if (row < m_entries.size() && m_entries.at(row).id == entry.id) {
            const OutboxEntry &shown = m_entries.at(row);
            const bool changed = shown.state != entry.state || shown.reason != entry.reason;
            m_entries[row] = entry;
            if (changed)
                emit dataChanged(index(row), index(row), {Qt::DisplayRole, StateRole, SyncMarkRole});
        } else {
            beginInsertRows({}, row, row);
            m_entries.insert(row, entry);
            endInsertRows();
        }
        ++row;
    }
}

std::optional<OutboxEntry> OutboxListModel::entry(int row) const
{
    if (row < 0 || row >= m_entries.size())
        return std::nullopt;
    return m_entries.at(row);
}

int OutboxListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_entries.size());
}

QVariant OutboxListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const OutboxEntry &entry = m_entries.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return SyncTexts::entrySummary(entry) + QLatin1Char('\n') + SyncTexts::entryState(entry);
    case EntryIdRole: return entry.id;
    case SummaryRole: return SyncTexts::entrySummary(entry);
    case StateRole: return SyncTexts::entryState(entry);
    case SyncMarkRole:
        return QVariant::fromValue(entry.state == OutboxEntry::State::refused ? SyncMark::notSent : SyncMark::waiting);
    default: return {};
    }
}

QHash<int, QByteArray> OutboxListModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    names.insert(EntryIdRole, "entryId");
    names.insert(SummaryRole, "summary");
    names.insert(StateRole, "state");
    names.insert(SyncMarkRole, "syncMark");
    return names;
}

} // namespace ravelin
