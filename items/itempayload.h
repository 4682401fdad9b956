#pragma once

#include <QJsonObject>
#include <QString>

#include <optional>

namespace ravelin {

// One item result sent to the server: the item, its new status id (1 completed,
// 2 incident), the worker's note and the server path of an uploaded photo.
class ItemPayload
{
public:
    qint64 id = 0;
    qint64 itemStatusId = 0;
    std::optional<QString> text;
    std::optional<QString> mediaPath;

    // Wire form: "id", "item_status_id", "text", "media_path"; absent values are
    // written as null, never left out.
    [[nodiscard]] QJsonObject encode() const;

    friend bool operator==(const ItemPayload &, const ItemPayload &) = default;
};

} // namespace ravelin
