#pragma once

#include "api/usersdata.h"
#include "items/item.h"
#include "items/itemstatus.h"
#include "items/itemsupdatepayload.h"
#include "tasks/task.h"

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace ravelin {

class NetworkManager;

// Sends the worker's result for one or several items of the open task: complete
// (the items become `ok`) or report (`nok`), with an optional note and picture.
class ItemActionVM : public QObject
{
    Q_OBJECT

public:
    ItemActionVM(QList<ItemPtr> items, TaskPtr task, NetworkManager *networkManager, QString placeholderNote,
                 UsersData users, QObject *parent = nullptr);

    [[nodiscard]] const QList<ItemPtr> &items() const { return m_items; }
    [[nodiscard]] const TaskPtr &task() const { return m_task; }
    [[nodiscard]] ItemStatus newStatus() const { return m_newStatus; }
    [[nodiscard]] QString placeholderNote() const { return m_placeholderNote; }
    [[nodiscard]] const UsersData &users() const { return m_users; }

    // True only for exactly one item that has a QR code: the screen shows its checkpoint image.
    [[nodiscard]] bool showsQRIndicator() const;

    // Why the items cannot be completed here, if they cannot: a single item
    // already completed ("Already Marked as `Completed`"), or a single item with
    // a QR code that no scan has matched yet ("Scan QR code to complete this
    // item"). Several items can always be completed together.
    [[nodiscard]] std::optional<QString> completeBlocker() const;
    // A report tells what is wrong: it needs a note with more than blanks.
    [[nodiscard]] static bool canReport(const QString &note);

    // The update body for the items, in the order received.
    [[nodiscard]] ItemsUpdatePayload makePayload(ItemStatus status, const std::optional<QString> &note,
                                                 const std::optional<QString> &mediaPath) const;

    // With a picture, the host stores it first and the body carries the host's
    // path (whatever the host's success flag); then the body is sent. The
    // completion receives whether the server accepted the update. It runs exactly
    // once, on the main thread, as long as this view model lives: with false when
    // the network manager is gone before or while the update runs.
    void update(ItemStatus status, const std::optional<QString> &note, const std::optional<QImage> &picture,
                std::function<void(bool success)> completion);

private:
    class PendingUpdate;

    void send(ItemStatus status, const std::optional<QString> &note, const std::optional<QString> &mediaPath,
              const std::shared_ptr<PendingUpdate> &pending);
    // Completes with false from the event loop.
    void failLater(const std::shared_ptr<PendingUpdate> &pending);

    QList<ItemPtr> m_items;
    TaskPtr m_task;
    QPointer<NetworkManager> m_networkManager;
    ItemStatus m_newStatus = ItemStatus::ok;
    QString m_placeholderNote;
    UsersData m_users;
};

} // namespace ravelin
