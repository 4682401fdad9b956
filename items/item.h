#pragma once

#include "api/json.h"
#include "items/itemstatus.h"

#include <QDateTime>
#include <QJsonObject>
#include <QString>

#include <memory>
#include <optional>

namespace ravelin {

class Item;
using ItemPtr = std::shared_ptr<Item>;

// One checklist entry of a task. Shared between the items view model, the items
// screen and the action screens, so a change made by one is seen by all.
class Item
{
public:
    qint64 id = 0;
    qint64 taskId = 0;
    QString name;
    QString details;
    bool isAudit = false;
    QDateTime dateCreated;
    std::optional<QDateTime> dateUpdated;
    ItemStatus status = ItemStatus::open;
    std::optional<QString> qrCode;
    // Set on the client when a scan matched this item; never read from the server.
    bool isQRMapped = false;

    // Server form: "id", "taskId", "name", "details", "isAudit" (a string: true
    // unless exactly "0"), "dateCreated", "dateUpdated" (optional, may be null),
    // "itemStatusId" (1..4, anything else stops the process), "qrCode" (optional).
    [[nodiscard]] static ItemPtr decode(const json::Value &value);

    // Local form: "status" as its text and "isAudit" as a boolean instead of the
    // server's "itemStatusId" and string flag; not meant to be decoded again.
    [[nodiscard]] QJsonObject encode() const;
};

} // namespace ravelin
