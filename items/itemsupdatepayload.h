#pragma once

#include "items/item.h"
#include "items/itempayload.h"
#include "items/itemstatus.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

namespace ravelin {

// Body of the item status update ("api/item/status").
class ItemsUpdatePayload
{
public:
    qint64 taskId = 0;
    qint64 updaterUserId = 0;
    QList<ItemPayload> items;

    // One ItemPayload per item, in order, each with the status's server id, the
    // same note and the same media path; an empty note is sent as null.
    [[nodiscard]] static ItemsUpdatePayload make(qint64 taskId, qint64 updaterUserId, const QList<ItemPtr> &items,
                                                 ItemStatus status, const QString &note,
                                                 const std::optional<QString> &mediaPath);

    // Wire form: "task_id", "updater_user_id", "items" (each item written by ItemPayload).
    [[nodiscard]] QJsonObject encode() const;
    // The request body: the wire form as compact JSON.
    [[nodiscard]] QByteArray toJson() const;

    friend bool operator==(const ItemsUpdatePayload &, const ItemsUpdatePayload &) = default;
};

} // namespace ravelin
