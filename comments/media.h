#pragma once

#include "api/json.h"

#include <QDateTime>
#include <QJsonObject>
#include <QString>

#include <memory>

namespace ravelin {

// A picture attached to a comment, stored on the server.
class Media
{
public:
    QString path; // server-side file path, used with the file route
    QDateTime dateCreated;
    qint64 commentId = 0;

    [[nodiscard]] static std::shared_ptr<Media> decode(const json::Value &value);
    [[nodiscard]] QJsonObject encode() const;
};

using MediaPtr = std::shared_ptr<Media>;

} // namespace ravelin
