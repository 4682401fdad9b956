#include "items/itemactionvm.h"

#include "api/apiqueue.h"
#include "api/debuglog.h"
#include "api/networkmanager.h"
#include "api/outboxsender.h"
#include "items/itemstexts.h"
#include "items/itemsupdateresponse.h"

#include <QTimer>

namespace ravelin {

ItemActionVM::ItemActionVM(QList<ItemPtr> items, TaskPtr task, NetworkManager *networkManager, QString placeholderNote,
                           UsersData users, QObject *parent)
    : QObject(parent)
    , m_items(std::move(items))
    , m_task(std::move(task))
    , m_networkManager(networkManager)
    , m_placeholderNote(std::move(placeholderNote))
    , m_users(std::move(users))
{ }

bool ItemActionVM::showsQRIndicator() const
{
    return m_items.size() == 1 && m_items.first()->qrCode.has_value();
}

std::optional<QString> ItemActionVM::completeBlocker() const
{
    if (m_items.size() != 1)
        return std::nullopt;
    const Item &item = *m_items.first();
    if (item.status == ItemStatus::ok)
        return ItemsTexts::alreadyCompleted();
    if (item.qrCode && !item.isQRMapped)
        return ItemsTexts::scanToComplete();
    return std::nullopt;
}

bool ItemActionVM::canReport(const QString &note)
{
    return !note.trimmed().isEmpty();
}

ItemsUpdatePayload ItemActionVM::makePayload(ItemStatus status, const std::optional<QString> &note,
                                             const std::optional<QString> &mediaPath) const
{
    return ItemsUpdatePayload::make(m_task->id, m_users.currentUser.id, m_items, status, note.value_or(QString()),
                                    mediaPath);
}

// One update's completion: called once, then dropped.
class ItemActionVM::PendingUpdate
{
public:
    explicit PendingUpdate(std::function<void(bool)> completion)
        : m_completion(std::move(completion))
    { }

    // Ends the update when the manager is destroyed before it answers.
    void watch(ItemActionVM *vm, NetworkManager *manager, const std::shared_ptr<PendingUpdate> &self)
    {
        m_managerGone = QObject::connect(manager, &QObject::destroyed, vm, [vm, self] { vm->failLater(self); });
    }

    void finish(bool success)
    {
        if (!m_completion)
            return;
        QObject::disconnect(m_managerGone);
        const auto completion = std::exchange(m_completion, nullptr);
        if (!success) {
            // The item update keeps the task-list wording of its failure line.
            debugLog(lcItems,
                     QStringLiteral("We got a failure trying to get the tasks. The error we got was: ") + m_failure);
        }
        completion(success);
    }

    void setFailure(QString description) { m_failure = std::move(description); }

private:
    std::function<void(bool)> m_completion;
    QMetaObject::Connection m_managerGone;
    // Without an answer (no manager), the error of a route that cannot be reached.
    QString m_failure = ManagerErrors(ManagerErrors::Kind::apiRouteError).localizedDescription();
};

void ItemActionVM::update(ItemStatus status, const std::optional<QString> &note, const std::optional<QImage> &picture,
                          std::function<void(bool)> completion)
{
    m_newStatus = status;
    auto pending = std::make_shared<PendingUpdate>(std::move(completion));
    if (!m_networkManager) {
        failLater(pending);
        return;
    }
    if (OutboxSender *outbox = m_networkManager->outbox()) {
        // Saved in the outbox, the result counts as done; the row is marked until the server has it.
        const OutboxEntry entry
            = OutboxEntry::itemsUpdate(makePayload(status, note, std::nullopt), m_networkManager->clock()());
        const bool saved = (picture ? outbox->add(entry, *picture) : outbox->add(entry)).has_value();
        QTimer::singleShot(0, this, [pending, saved] { pending->finish(saved); });
        return;
    }
    pending->watch(this, m_networkManager, pending);
    if (!picture) {
        send(status, note, std::nullopt, pending);
        return;
    }
    const QString fileName = m_networkManager->makePhotoFileName(m_users.currentUser.id);
    m_networkManager->uploadImage(
        *picture, fileName, this,
        [this, status, note, pending](bool, const std::optional<QString> &path) { send(status, note, path, pending); });
}

void ItemActionVM::send(ItemStatus status, const std::optional<QString> &note, const std::optional<QString> &mediaPath,
                        const std::shared_ptr<PendingUpdate> &pending)
{
    if (!m_networkManager) {
        failLater(pending);
        return;
    }
    const Router route = Router::updateItemsStatus(makePayload(status, note, mediaPath));
    m_networkManager->request<ItemsUpdateResponse>(route, ApiQueue::shared(), this,
                                                   [pending](const Result<ItemsUpdateResponse> &result) {
                                                       if (!result.isSuccess())
                                                           pending->setFailure(result.error().localizedDescription());
                                                       pending->finish(result.isSuccess());
                                                   });
}

void ItemActionVM::failLater(const std::shared_ptr<PendingUpdate> &pending)
{
    QTimer::singleShot(0, this, [pending] { pending->finish(false); });
}

} // namespace ravelin
