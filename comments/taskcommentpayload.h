#pragma once

#include "api/clock.h"
#include "api/json.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <optional>

namespace ravelin {

// The body posted to "api/comment". Sent with snake-case keys; "item_id" and
// "media_path" are always written, as null when absent.
class TaskCommentPayload
{
public:
    // The creation time is `now` in milliseconds since 1970, rounded half away from
    // zero. An empty text becomes a single space: the server is never sent an empty
    // text. An absent text is a programming error and stops the process.
    TaskCommentPayload(const std::optional<QString> &text, qint64 taskId, qint64 userId, std::optional<qint64> itemId,
                       bool isIncident, std::optional<QString> mediaPath, TimePoint now);

    QString text;
    qint64 taskId = 0;
    qint64 userId = 0;
    std::optional<qint64> itemId;
    bool isIncident = false;
    std::optional<QString> mediaPath;
    qint64 dateCreated = 0;

    [[nodiscard]] QJsonObject encode() const;
    [[nodiscard]] QByteArray toJson() const;
    // Reads the camel-case field names.
    [[nodiscard]] static TaskCommentPayload decode(const json::Value &value);

    [[nodiscard]] static qint64 roundedMilliseconds(TimePoint moment);

private:
    TaskCommentPayload() = default;
};

} // namespace ravelin
