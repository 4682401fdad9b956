#pragma once

#include "api/pendingresults.h"

#include "api/json.h"
#include "comments/media.h"

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <memory>
#include <optional>

namespace ravelin {

// One comment of a task's thread, as the server delivers it.
class Comment
{
public:
    std::optional<QString> text;
    qint64 userId = 0;
    QList<qint64> itemIds; // the wire carries at most one, under "itemId"
    bool isIncident = false;
    QDateTime dateCreated;
    QList<MediaPtr> media;
    QString assetName;
    QString assetIcon; // "list_pin_" + the name on the wire
    // Never on the wire: a comment still in the outbox is shown with its mark.
    SyncMark syncMark = SyncMark::none;

    // Keys "text", "userId", "assetName", "assetIcon", "itemId", "isIncident"
    // (a string: false only for "0"), "dateCreated", "media" (optional).
    [[nodiscard]] static std::shared_ptr<Comment> decode(const json::Value &value);
    [[nodiscard]] QJsonObject encode() const;
};

using CommentPtr = std::shared_ptr<Comment>;

} // namespace ravelin
