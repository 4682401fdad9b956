#include "demo/server/demowire.h"

#include <QJsonDocument>

namespace ravelin::demowire {

namespace {

QJsonValue optionalDate(const std::optional<QDateTime> &moment)
{
    return moment ? QJsonValue(serverDate(*moment)) : QJsonValue(QJsonValue::Null);
}

QJsonValue optionalId(const std::optional<qint64> &id)
{
    return id ? QJsonValue(*id) : QJsonValue(QJsonValue::Null);
}

} // namespace

QString serverDate(const QDateTime &moment)
{
    return moment.toUTC().toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzz")) + QStringLiteral("+0000");
}

QJsonObject definition(const DemoDefinition &entry)
{
    return {{"id", entry.id}, {"name", entry.name}};
}

QJsonArray definitions(const QList<DemoDefinition> &entries)
{
    QJsonArray array;
    for (const DemoDefinition &entry : entries)
        array.append(definition(entry));
    return array;
}

QJsonObject asset(const DemoUser &user)
{
    return {{"id", user.id}, {"name", user.name}, {"icon", user.icon}};
}

QJsonObject task(const DemoTask &task, const std::array<int, 3> &counts)
{
    QJsonArray itemsCount;
    for (int status = 1; status <= 3; ++status)
        itemsCount.append(QJsonObject{{"itemStatusId", status}, {"count", counts.at(static_cast<size_t>(status - 1))}});

    QJsonObject object{
        {"id", task.id},
        {"name", task.name},
        {"description", task.description},
        {"latitude", task.latitude},
        {"longitude", task.longitude},
        {"ownerId", task.ownerId},
        {"ownerAssetName", task.ownerAssetName},
        {"assignedUserId", optionalId(task.assignedUserId)},
        {"updaterUserId", optionalId(task.updaterUserId)},
        {"dateScheduled", optionalDate(task.dateScheduled)},
        {"dateCreated", serverDate(task.dateCreated)},
        {"dateUpdated", optionalDate(task.dateUpdated)},
        {"taskStatusId", task.taskStatusId},
        {"taskCategoryId", task.taskCategoryId},
        {"priority", task.priority},
        {"itemsCount", itemsCount},
        {"updated", false},
    };
    return object;
}

QJsonObject item(const DemoItem &item)
{
    QJsonObject object{
        {"id", item.id},
        {"taskId", item.taskId},
        {"name", item.name},
        {"details", item.details},
        {"isAudit", item.isAudit ? "1" : "0"},
        {"dateCreated", serverDate(item.dateCreated)},
        {"itemStatusId", item.itemStatusId},
    };
    if (item.dateUpdated)
        object.insert("dateUpdated", serverDate(*item.dateUpdated));
    if (item.qrCode)
        object.insert("qrCode", *item.qrCode);
    return object;
}

QJsonObject comment(const DemoComment &comment, const DemoUser *author)
{
    QJsonArray media;
    for (const DemoMedia &entry : comment.media) {
        media.append(QJsonObject{
            {"path", entry.path},
            {"dateCreated", serverDate(entry.dateCreated)},
            {"commentId", entry.commentId},
        });
    }
    return {
        {"text", comment.text ? QJsonValue(*comment.text) : QJsonValue(QJsonValue::Null)},
        {"userId", comment.userId},
        {"dateCreated", serverDate(comment.dateCreated)},
        {"itemId", optionalId(comment.itemId)},
        {"isIncident", comment.isIncident ? "1" : "0"},
        {"media", media},
        {"assetName", author ? author->name : QStringLiteral("Unknown")},
        {"assetIcon", author ? author->icon : QStringLiteral("people_00")},
    };
}

QByteArray success(const QJsonValue &data)
{
    QJsonObject envelope{{"success", true}};
    if (!data.isUndefined())
        envelope.insert("data", data);
    return QJsonDocument(envelope).toJson(QJsonDocument::Compact);
}

QByteArray failure(const QString &message)
{
    return QJsonDocument(QJsonObject{{"success", false}, {"message", message}}).toJson(QJsonDocument::Compact);
}

} // namespace ravelin::demowire
