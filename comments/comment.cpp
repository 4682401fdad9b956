#include "comments/comment.h"

#include "api/datecoding.h"

#include <QJsonArray>

namespace ravelin {

CommentPtr Comment::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    auto c = std::make_shared<Comment>();
    c->text = o.stringIfPresent("text");
    c->userId = o.int64("userId");
    c->assetName = o.string("assetName");
    c->assetIcon = QStringLiteral("list_pin_") + o.string("assetIcon");
    if (const auto itemId = o.int64IfPresent("itemId"))
        c->itemIds.append(*itemId);
    c->isIncident = o.value("isIncident").toStringView() != "0";
    c->dateCreated = o.date("dateCreated");
    if (const auto media = o.find("media"))
        c->media = media->toArray().map<MediaPtr>(&Media::decode);
    return c;
}

QJsonObject Comment::encode() const
{
    QJsonArray ids;
    for (qint64 id : itemIds)
        ids.append(id);
    QJsonArray mediaList;
    for (const MediaPtr &m : media)
        mediaList.append(m->encode());
    QJsonObject o{
        {QStringLiteral("userId"), userId},         {QStringLiteral("itemIds"), ids},
        {QStringLiteral("isIncident"), isIncident}, {QStringLiteral("dateCreated"), formatServerDate(dateCreated)},
        {QStringLiteral("media"), mediaList},       {QStringLiteral("assetName"), assetName},
        {QStringLiteral("assetIcon"), assetIcon}};
    if (text)
        o.insert(QStringLiteral("text"), *text);
    return o;
}

} // namespace ravelin
