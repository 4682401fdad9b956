#pragma once

#include "api/outboxentry.h"
#include "items/itemstatus.h"

#include <QHash>
#include <QList>
#include <QMetaType>
#include <QSet>

#include <memory>

#include <optional>

namespace ravelin {

class Item;
class Task;

// How a card, an item row or a comment stands with the server while the outbox
// holds a result for it.
enum class SyncMark {
    none, // the server has everything
    waiting, // saved on the device, not on the server yet
    notSent, // the server refused it: it waits in "Not sent"
};

// Marks by id (a task's, an item's).
using SyncMarks = QHash<qint64, SyncMark>;

// What the outbox of the signed-in user still holds, as the screens show it:
// the statuses a task and its items will have once the results arrive, the marks
// on their cards and rows, and the comments not on the server yet. Made from the
// outbox rows, never from flags in memory, so that a restarted app shows the same.
class PendingResults
{
public:
    PendingResults() = default;
    // The rows in the order they were made.
    explicit PendingResults(const QList<OutboxEntry> &entries);

    [[nodiscard]] const SyncMarks &taskMarks() const { return m_taskMarks; }
    [[nodiscard]] const SyncMarks &itemMarks() const { return m_itemMarks; }
    // The status the task's last waiting change or block sets.
    [[nodiscard]] std::optional<qint64> taskStatusId(qint64 taskId) const;
    // The status the item's last waiting update sets.
    [[nodiscard]] std::optional<ItemStatus> itemStatus(qint64 itemId) const;
    // The task's comments (and incident comments of blocks) whose post has not
    // reached the server, oldest first.
    [[nodiscard]] QList<OutboxEntry> comments(qint64 taskId) const;
    [[nodiscard]] bool isEmpty() const { return m_taskMarks.isEmpty() && m_itemMarks.isEmpty(); }

    // Gives fetched tasks and items the statuses that results still in the
    // outbox set: what the worker did shows, even before the server has it.
    void applyTo(const QList<std::shared_ptr<Task>> &tasks) const;
    void applyTo(const QList<std::shared_ptr<Item>> &items) const;

    // The ids whose mark differs between two sets of marks.
    [[nodiscard]] static QList<qint64> changedIds(const SyncMarks &before, const SyncMarks &after);
    // The rows (anything with an `id`) whose mark differs between two sets.
    template<class Rows>
    [[nodiscard]] static QList<int> changedRows(const SyncMarks &before, const SyncMarks &after, const Rows &rows)
    {
        const QList<qint64> changed = changedIds(before, after);
        const QSet<qint64> ids(changed.cbegin(), changed.cend());
        QList<int> out;
        for (int row = 0; !ids.isEmpty() && row < int(rows.size()); ++row) {
            if (ids.contains(rows.at(row)->id))
                out.append(row);
        }
        return out;
    }

private:
    SyncMarks m_taskMarks;
    SyncMarks m_itemMarks;
    QHash<qint64, qint64> m_taskStatusIds;
    QHash<qint64, ItemStatus> m_itemStatuses;
    QList<OutboxEntry> m_comments;
};

} // namespace ravelin

Q_DECLARE_METATYPE(ravelin::SyncMark)
