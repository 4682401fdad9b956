#include "api/outboxentry.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace ravelin {

namespace {

QJsonValue orNull(const std::optional<QString> &value)
{
    return value ? QJsonValue(*value) : QJsonValue(QJsonValue::Null);
}

std::optional<QString> stringOrNone(const QJsonValue &value)
{
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

qint64 milliseconds(TimePoint now)
{
    return TaskCommentPayload::roundedMilliseconds(now);
}

QJsonObject encodeComment(const TaskCommentPayload &payload)
{
    return QJsonObject{
        {QStringLiteral("text"), payload.text},
        {QStringLiteral("taskId"), payload.taskId},
        {QStringLiteral("userId"), payload.userId},
        {QStringLiteral("itemId"), payload.itemId ? QJsonValue(*payload.itemId) : QJsonValue(QJsonValue::Null)},
        {QStringLiteral("isIncident"), payload.isIncident},
        {QStringLiteral("dateCreated"), payload.dateCreated},
    };
}

std::optional<TaskCommentPayload> decodeComment(const QJsonObject &o)
{
    if (!o.value(QLatin1String("text")).isString())
        return std::nullopt;
    const QJsonValue itemId = o.value(QLatin1String("itemId"));
    TaskCommentPayload payload(o.value(QLatin1String("text")).toString(), o.value(QLatin1String("taskId")).toInteger(),
                               o.value(QLatin1String("userId")).toInteger(),
                               itemId.isDouble() ? std::optional(itemId.toInteger()) : std::nullopt,
                               o.value(QLatin1String("isIncident")).toBool(), std::nullopt, TimePoint());
    payload.dateCreated = o.value(QLatin1String("dateCreated")).toInteger();
    return payload;
}

QJsonObject encodeItems(const ItemsUpdatePayload &payload)
{
    QJsonArray items;
    for (const ItemPayload &item : payload.items) {
        items.append(QJsonObject{{QStringLiteral("id"), item.id},
                                 {QStringLiteral("itemStatusId"), item.itemStatusId},
                                 {QStringLiteral("text"), orNull(item.text)}});
    }
    return QJsonObject{{QStringLiteral("taskId"), payload.taskId},
                       {QStringLiteral("updaterUserId"), payload.updaterUserId},
                       {QStringLiteral("items"), items}};
}

std::optional<ItemsUpdatePayload> decodeItems(const QJsonObject &o)
{
    if (!o.value(QLatin1String("items")).isArray())
        return std::nullopt;
    ItemsUpdatePayload payload;
    payload.taskId = o.value(QLatin1String("taskId")).toInteger();
    payload.updaterUserId = o.value(QLatin1String("updaterUserId")).toInteger();
    const QJsonArray items = o.value(QLatin1String("items")).toArray();
    for (const auto &value : items) {
        const QJsonObject item = value.toObject();
        payload.items.append(ItemPayload{item.value(QLatin1String("id")).toInteger(),
                                         item.value(QLatin1String("itemStatusId")).toInteger(),
                                         stringOrNone(item.value(QLatin1String("text"))), std::nullopt});
    }
    return payload;
}

} // namespace

OutboxEntry OutboxEntry::taskStatus(qint64 userId, qint64 taskId, qint64 statusId, TimePoint now)
{
    OutboxEntry entry;
    entry.kind = Kind::taskStatus;
    entry.userId = userId;
    entry.taskId = taskId;
    entry.statusId = statusId;
    entry.dateCreated = milliseconds(now);
    return entry;
}

OutboxEntry OutboxEntry::itemsUpdate(const ItemsUpdatePayload &payload, TimePoint now)
{
    OutboxEntry entry;
    entry.kind = Kind::itemsUpdate;
    entry.userId = payload.updaterUserId;
    entry.taskId = payload.taskId;
    entry.items = payload;
    if (!payload.items.isEmpty())
        entry.mediaPath = payload.items.first().mediaPath;
    entry.dateCreated = milliseconds(now);
    return entry;
}

OutboxEntry OutboxEntry::comment(const TaskCommentPayload &payload)
{
    OutboxEntry entry;
    entry.kind = Kind::comment;
    entry.userId = payload.userId;
    entry.taskId = payload.taskId;
    entry.commentPayload = payload;
    entry.mediaPath = payload.mediaPath;
    entry.dateCreated = payload.dateCreated;
    return entry;
}

OutboxEntry OutboxEntry::block(const TaskCommentPayload &incident, qint64 statusId)
{
    OutboxEntry entry = comment(incident);
    entry.kind = Kind::block;
    entry.statusId = statusId;
    return entry;
}

bool OutboxEntry::nextStepIsComment() const
{
    return kind == Kind::comment || (kind == Kind::block && stepsDone == 0);
}

ItemsUpdatePayload OutboxEntry::itemsToSend() const
{
    ItemsUpdatePayload payload = items.value_or(ItemsUpdatePayload());
    for (ItemPayload &item : payload.items)
        item.mediaPath = mediaPath;
    return payload;
}

TaskCommentPayload OutboxEntry::commentToSend() const
{
    TaskCommentPayload payload = *commentPayload;
    payload.mediaPath = mediaPath;
    return payload;
}

QByteArray OutboxEntry::encodePayload() const
{
    QJsonObject o;
    switch (kind) {
    case Kind::taskStatus: o.insert(QStringLiteral("statusId"), statusId); break;
    case Kind::itemsUpdate: o.insert(QStringLiteral("items"), encodeItems(items.value_or(ItemsUpdatePayload()))); break;
    case Kind::comment: o.insert(QStringLiteral("comment"), encodeComment(*commentPayload)); break;
    case Kind::block:
        o.insert(QStringLiteral("comment"), encodeComment(*commentPayload));
        o.insert(QStringLiteral("statusId"), statusId);
        break;
    }
    return QJsonDocument(o).toJson(QJsonDocument::Compact);
}

bool OutboxEntry::decodePayload(const QByteArray &payload)
{
    const QJsonObject o = QJsonDocument::fromJson(payload).object();
    statusId = o.value(QLatin1String("statusId")).toInteger();
    items.reset();
    commentPayload.reset();
    switch (kind) {
    case Kind::taskStatus: return o.contains(QLatin1String("statusId"));
    case Kind::itemsUpdate: items = decodeItems(o.value(QLatin1String("items")).toObject()); return items.has_value();
    case Kind::comment:
    case Kind::block:
        commentPayload = decodeComment(o.value(QLatin1String("comment")).toObject());
        return commentPayload.has_value();
    }
    return false;
}

QString OutboxEntry::stateName(State state)
{
    switch (state) {
    case State::waiting: return QStringLiteral("waiting");
    case State::attempted: return QStringLiteral("attempted");
    case State::sent: return QStringLiteral("sent");
    case State::refused: return QStringLiteral("refused");
    }
    return {};
}

} // namespace ravelin
