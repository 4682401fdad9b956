#include "items/itemsvm.h"

#include <QCoreApplication>

#include "api/apiqueue.h"
#include "api/debuglog.h"
#include "api/networkmanager.h"
#include "api/outboxsender.h"
#include "items/itemsresponse.h"

namespace ravelin {

ItemsVM::ItemsVM(TaskPtr task, NetworkManager *networkManager, UsersData users, QObject *parent)
    : QObject(parent)
    , m_task(std::move(task))
    , m_networkManager(networkManager)
    , m_users(std::move(users))
{ }

void ItemsVM::setSelectedActionItem(ItemPtr item)
{
    m_selectedActionItem = std::move(item);
}

void ItemsVM::clearSelection()
{
    m_selectedItems.clear();
}

void ItemsVM::fetchItems(std::function<void(bool)> completion)
{
    const Router route = Router::getItems(m_task->id);
    m_networkManager->request<ItemsResponse>(
        route, ApiQueue::shared(), this,
        [this, route, completion = std::move(completion)](const Result<ItemsResponse> &result) {
            m_cachedAt = m_networkManager ? m_networkManager->cachedAnswerTime(route) : std::nullopt;
            if (!result.isSuccess()) {
                debugLog(lcItems,
                         QStringLiteral("We got a failure trying to get the items. The error we got was: ")
                             + result.error().localizedDescription());
                completion(false);
                return;
            }
            m_task->itemList.items = result.value().data;
            if (const OutboxSender *outbox = m_networkManager ? m_networkManager->outbox() : nullptr)
                outbox->pending().applyTo(m_task->itemList.items);
            completion(true);
        });
}

void ItemsVM::select(const ItemPtr &item, bool isSelected)
{
    const auto sameId = [&item](const ItemPtr &entry) { return entry->id == item->id; };
    if (isSelected) {
        if (std::none_of(m_selectedItems.cbegin(), m_selectedItems.cend(), sameId))
            m_selectedItems.append(item);
    } else {
        m_selectedItems.removeIf(sameId);
    }
}

QrMatch ItemsVM::match(const std::optional<QString> &scanned)
{
    const QString notFound = QCoreApplication::translate("ItemsVM", "Cannot find item matching the scanned QR");
    if (!scanned)
        return QrMatch{std::nullopt, QCoreApplication::translate("ItemsVM", "Invalid Code"), notFound};

    const QList<ItemPtr> &items = m_task->itemList.items;
    const auto found = std::find_if(items.cbegin(), items.cend(), [&scanned](const ItemPtr &item) {
        return item->qrCode && *item->qrCode == *scanned;
    });
    if (found == items.cend())
        return QrMatch{std::nullopt, QCoreApplication::translate("ItemsVM", "No Item Detected"), notFound};

    const ItemPtr &item = *found;
    if (item->status == ItemStatus::ok) {
        return QrMatch{
            std::nullopt, QCoreApplication::translate("ItemsVM", "Item Detected"),
            QCoreApplication::translate("ItemsVM", "Item `%1` already marked as `Completed`.").arg(item->name)};
    }
    item->isQRMapped = true;
    const QList<ItemPtr> rows = m_task->itemList.filteredItems();
    for (int row = 0; row < rows.size(); ++row) {
        if (rows.at(row)->id == item->id)
            return QrMatch{row, std::nullopt, std::nullopt};
    }
    return QrMatch{}; // hidden by the filter: mapped, but nothing to show
}

void ItemsVM::findItem(const std::optional<QString> &scanned, const std::function<void(const QrMatch &)> &completion)
{
    completion(match(scanned));
}

NetworkManager *ItemsVM::networkManager() const
{
    return m_networkManager;
}

} // namespace ravelin
