#include "items/itemactionvm.h"

#include "api/apiqueue.h"
#include "api/debuglog.h"
#include "api/networkmanager.h"
#include "items/itemsupdateresponse.h"

namespace ravelin {

ItemActionVM::ItemActionVM(QList<ItemPtr> items, TaskPtr task, NetworkManager *networkManager, QString placeholderNote,
                           UsersData users, QObject *parent)
    : QObject(parent)
    , m_items(std::move(items))
    , m_task(std::move(task))
    , m_networkManager(networkManager)
    , m_placeholderNote(std::move(placeholderNote))
    , m_users(std::move(users))
{
}

bool ItemActionVM::showsQRIndicator() const
{
    return m_items.size() == 1 && m_items.first()->qrCode.has_value();
}

ItemsUpdatePayload ItemActionVM::makePayload(ItemStatus status, const std::optional<QString> &note,
                                             const std::optional<QString> &mediaPath) const
{
    return ItemsUpdatePayload::make(m_task->id, m_users.currentUser.id, m_items, status, note.value_or(QString()),
                                    mediaPath);
}

void ItemActionVM::update(ItemStatus status, const std::optional<QString> &note, const std::optional<QImage> &picture,
                          std::function<void(bool)> completion)
{
    m_newStatus = status;
    if (!picture) {
        send(status, note, std::nullopt, std::move(completion));
        return;
    }
    const QString fileName = m_networkManager->makePhotoFileName(m_users.currentUser.id);
    m_networkManager->uploadImage(*picture, fileName, this,
                                  [this, status, note, completion](bool, std::optional<QString> path) {
                                      send(status, note, std::move(path), completion);
                                  });
}

void ItemActionVM::send(ItemStatus status, std::optional<QString> note, std::optional<QString> mediaPath,
                        std::function<void(bool)> completion)
{
    if (!m_networkManager)
        return;
    const Router route = Router::updateItemsStatus(makePayload(status, note, mediaPath));
    m_networkManager->request<ItemsUpdateResponse>(
        route, ApiQueue::shared(), this, [completion](const Result<ItemsUpdateResponse> &result) {
            if (!result.isSuccess()) {
                // The item update keeps the task-list wording of its failure line.
                debugLog(QStringLiteral("We got a failure trying to get the tasks. The error we got was: ")
                         + result.error().localizedDescription());
            }
            completion(result.isSuccess());
        });
}

} // namespace ravelin
