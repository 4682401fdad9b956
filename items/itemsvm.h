#pragma once

#include "api/clock.h"
#include "api/usersdata.h"
#include "items/item.h"
#include "tasks/task.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <optional>

namespace ravelin {

class NetworkManager;

// What a scanned QR code resolves to: a row of the visible list to act on, an
// alert to show, or (when the filter hides the matched item) nothing at all.
struct QrMatch
{
    std::optional<int> row;
    std::optional<QString> title;
    std::optional<QString> message;

    friend bool operator==(const QrMatch &, const QrMatch &) = default;
};

// The state behind a task's items screen: the task, the multi-selection and the
// item picked for a single action.
class ItemsVM : public QObject
{
    Q_OBJECT

public:
    ItemsVM(TaskPtr task, NetworkManager *networkManager, UsersData users, QObject *parent = nullptr);

    [[nodiscard]] const TaskPtr &task() const { return m_task; }
    [[nodiscard]] NetworkManager *networkManager() const;
    [[nodiscard]] const UsersData &users() const { return m_users; }
    [[nodiscard]] const QList<ItemPtr> &selectedItems() const { return m_selectedItems; }
    [[nodiscard]] ItemPtr selectedActionItem() const { return m_selectedActionItem; }
    void setSelectedActionItem(ItemPtr item);
    void clearSelection();

    // When the last fetch was answered from the offline cache: when the server
    // had given that answer. None when it came from the server.
    [[nodiscard]] std::optional<TimePoint> cachedAt() const { return m_cachedAt; }
    // Replaces the task's items with the server's (the status filter stays).
    void fetchItems(std::function<void(bool success)> completion);

    // Adds (no two entries with the same id) or removes (every entry with that id) an item.
    void select(const ItemPtr &item, bool isSelected);

    // Resolves a scanned code against all items of the task (first match in server
    // order, exact text). An open or reported match is flagged as mapped and
    // reported as its row in the filtered list.
    void findItem(const std::optional<QString> &scanned, const std::function<void(const QrMatch &)> &completion);
    [[nodiscard]] QrMatch match(const std::optional<QString> &scanned);

private:
    TaskPtr m_task;
    QPointer<NetworkManager> m_networkManager;
    UsersData m_users;
    QList<ItemPtr> m_selectedItems;
    ItemPtr m_selectedActionItem;
    std::optional<TimePoint> m_cachedAt;
};

} // namespace ravelin
