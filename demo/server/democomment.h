#pragma once

#include "demo/server/demomedia.h"

#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace ravelin {

// One entry of a task's comment thread.
struct DemoComment
{
    qint64 id = 0;
    qint64 taskId = 0;
    std::optional<QString> text;
    qint64 userId = 0;
    QDateTime dateCreated;
    std::optional<qint64> itemId;
    bool isIncident = false;
    QList<DemoMedia> media;
};

} // namespace ravelin
