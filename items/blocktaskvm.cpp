#include "items/blocktaskvm.h"

#include "api/networkmanager.h"
#include "api/outboxsender.h"
#include "comments/taskcommentpayload.h"
#include "tasks/taskstatus.h"

#include <QStringList>
#include <QTimer>

namespace ravelin {

BlockTaskVM::BlockTaskVM(TaskPtr task, NetworkManager *networkManager, QString placeholderNote, UsersData users,
                         QObject *parent)
    : QObject(parent)
    , m_task(std::move(task))
    , m_networkManager(networkManager)
    , m_placeholderNote(std::move(placeholderNote))
    , m_users(std::move(users))
{ }

QString BlockTaskVM::itemLine() const
{
    const QList<ItemPtr> &items = m_task->itemList.items;
    return items.size() == 1 ? items.first()->name : QString();
}

QString BlockTaskVM::detailsLine() const
{
    const QList<ItemPtr> &items = m_task->itemList.items;
    if (items.isEmpty())
        return {};
    if (items.size() == 1)
        return items.first()->details;
    QStringList names;
    for (const ItemPtr &item : items)
        names.append(item->name);
    return names.join(QLatin1Char('\n'));
}

bool BlockTaskVM::postsComment(const std::optional<QString> &reason, bool hasPicture)
{
    if (hasPicture)
        return true;
    return reason && !reason->isEmpty() && *reason != QLatin1String(" ");
}

void BlockTaskVM::block(const std::optional<QString> &reason, const std::optional<QImage> &picture,
                        std::function<void(Outcome)> completion)
{
    if (!postsComment(reason, picture.has_value())) {
        completion(Outcome::blockedWithoutComment);
        return;
    }
    if (OutboxSender *outbox = m_networkManager->outbox()) {
        // The incident comment and the status change go as one result, in that order.
        const TaskCommentPayload incident(reason.value_or(QString()), m_task->id, m_users.currentUser.id, std::nullopt,
                                          true, std::nullopt, m_networkManager->clock()());
        const OutboxEntry entry = OutboxEntry::block(incident, TaskStatuses::serverId(TaskStatus::blocked));
        const bool saved = (picture ? outbox->add(entry, *picture) : outbox->add(entry)).has_value();
        QTimer::singleShot(0, this, [completion = std::move(completion), saved] {
            completion(saved ? Outcome::blocked : Outcome::failed);
        });
        return;
    }
    m_networkManager->postComment(
        m_task->id, m_users.currentUser.id, reason.value_or(QString()), picture, true, this,
        [completion = std::move(completion)](bool posted) { completion(posted ? Outcome::blocked : Outcome::failed); });
}

} // namespace ravelin
