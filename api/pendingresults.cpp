#include "api/pendingresults.h"

#include "items/item.h"
#include "tasks/task.h"

#include <QSet>

namespace ravelin {

namespace {

// A refusal outweighs a wait: the worker has something to decide.
void mark(SyncMarks &marks, qint64 id, const OutboxEntry &entry)
{
    SyncMark &current = marks[id];
    const SyncMark next = entry.state == OutboxEntry::State::refused ? SyncMark::notSent : SyncMark::waiting;
    if (current != SyncMark::notSent)
        current = next;
}

} // namespace

PendingResults::PendingResults(const QList<OutboxEntry> &entries)
{
    for (const OutboxEntry &entry : entries) {
        if (entry.state == OutboxEntry::State::sent)
            continue;
        const bool pending = entry.isPending();
        switch (entry.kind) {
        case OutboxEntry::Kind::taskStatus:
        case OutboxEntry::Kind::block:
            mark(m_taskMarks, entry.taskId, entry);
            if (pending)
                m_taskStatusIds.insert(entry.taskId, entry.statusId);
            if (entry.kind == OutboxEntry::Kind::block && entry.nextStepIsComment())
                m_comments.append(entry);
            break;
        case OutboxEntry::Kind::itemsUpdate:
            if (!entry.items)
                break;
            for (const ItemPayload &item : entry.items->items) {
                mark(m_itemMarks, item.id, entry);
                if (pending)
                    m_itemStatuses.insert(item.id, ItemStatuses::fromServerId(item.itemStatusId));
            }
            break;
        case OutboxEntry::Kind::comment: m_comments.append(entry); break;
        }
    }
}

std::optional<qint64> PendingResults::taskStatusId(qint64 taskId) const
{
    const auto found = m_taskStatusIds.constFind(taskId);
    return found == m_taskStatusIds.cend() ? std::nullopt : std::optional(*found);
}

std::optional<ItemStatus> PendingResults::itemStatus(qint64 itemId) const
{
    const auto found = m_itemStatuses.constFind(itemId);
    return found == m_itemStatuses.cend() ? std::nullopt : std::optional(*found);
}

QList<OutboxEntry> PendingResults::comments(qint64 taskId) const
{
    QList<OutboxEntry> out;
    for (const OutboxEntry &entry : m_comments) {
        if (entry.taskId == taskId)
            out.append(entry);
    }
    return out;
}

void PendingResults::applyTo(const QList<TaskPtr> &tasks) const
{
    if (m_taskStatusIds.isEmpty())
        return;
    for (const TaskPtr &task : tasks) {
        if (const std::optional<qint64> status = taskStatusId(task->id))
            task->currentStatus = TaskStatuses::fromServerId(*status);
    }
}

void PendingResults::applyTo(const QList<ItemPtr> &items) const
{
    if (m_itemStatuses.isEmpty())
        return;
    for (const ItemPtr &item : items) {
        if (const std::optional<ItemStatus> status = itemStatus(item->id))
            item->status = *status;
    }
}

QList<qint64> PendingResults::changedIds(const SyncMarks &before, const SyncMarks &after)
{
    QSet<qint64> ids;
    for (auto it = before.cbegin(); it != before.cend(); ++it) {
        if (after.value(it.key(), SyncMark::none) != it.value())
            ids.insert(it.key());
    }
    for (auto it = after.cbegin(); it != after.cend(); ++it) {
        if (before.value(it.key(), SyncMark::none) != it.value())
            ids.insert(it.key());
    }
    return QList<qint64>(ids.cbegin(), ids.cend());
}

} // namespace ravelin
