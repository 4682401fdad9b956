#include "comments/taskcommentpayload.h"

#include "api/fatalerror.h"

#include <QJsonDocument>

namespace ravelin {

TaskCommentPayload::TaskCommentPayload(const std::optional<QString> &text, qint64 taskId, qint64 userId,
                                       std::optional<qint64> itemId, bool isIncident, std::optional<QString> mediaPath,
                                       TimePoint now)
    : taskId(taskId)
    , userId(userId)
    , itemId(itemId)
    , isIncident(isIncident)
    , mediaPath(std::move(mediaPath))
    , dateCreated(roundedMilliseconds(now))
{
    if (!text)
        fatalError(QStringLiteral("A comment payload needs a text"), "TaskCommentPayload");
    this->text = text->isEmpty() ? QStringLiteral(" ") : *text;
}

qint64 TaskCommentPayload::roundedMilliseconds(TimePoint moment)
{
    using namespace std::chrono;
    const auto ns = duration_cast<nanoseconds>(moment.time_since_epoch()).count();
    const qint64 whole = ns / 1'000'000;
    const qint64 rest = ns % 1'000'000;
    if (rest >= 500'000)
        return whole + 1;
    if (rest <= -500'000)
        return whole - 1;
    return whole;
}

QJsonObject TaskCommentPayload::encode() const
{
    return QJsonObject{
        {QStringLiteral("text"), text},
        {QStringLiteral("task_id"), taskId},
        {QStringLiteral("user_id"), userId},
        {QStringLiteral("item_id"), itemId ? QJsonValue(*itemId) : QJsonValue(QJsonValue::Null)},
        {QStringLiteral("date_created"), dateCreated},
        {QStringLiteral("is_incident"), isIncident},
        {QStringLiteral("media_path"), mediaPath ? QJsonValue(*mediaPath) : QJsonValue(QJsonValue::Null)}};
}

QByteArray TaskCommentPayload::toJson() const
{
    return QJsonDocument(encode()).toJson(QJsonDocument::Compact);
}

TaskCommentPayload TaskCommentPayload::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    TaskCommentPayload p;
    p.text = o.string("text");
    p.taskId = o.int64("taskId");
    p.userId = o.int64("userId");
    p.itemId = o.int64IfPresent("itemId");
    p.isIncident = o.boolean("isIncident");
    p.mediaPath = o.stringIfPresent("mediaPath");
    p.dateCreated = o.int64("dateCreated");
    return p;
}

} // namespace ravelin
