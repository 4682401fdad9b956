#pragma once

#include <QDateTime>
#include <QString>

namespace ravelin {

// A picture attached to a comment; `path` is served under "/files/".
struct DemoMedia
{
    QString path;
    QDateTime dateCreated;
    qint64 commentId = 0;
};

} // namespace ravelin
