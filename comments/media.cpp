#include "comments/media.h"

#include "api/datecoding.h"

namespace ravelin {

MediaPtr Media::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    auto media = std::make_shared<Media>();
    media->path = o.string("path");
    media->dateCreated = o.date("dateCreated");
    media->commentId = o.int64("commentId");
    return media;
}

QJsonObject Media::encode() const
{
    return QJsonObject{{QStringLiteral("path"), path},
                       {QStringLiteral("dateCreated"), formatServerDate(dateCreated)},
                       {QStringLiteral("commentId"), commentId}};
}

} // namespace ravelin
