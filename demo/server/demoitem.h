#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace ravelin {

// One checkpoint of a task.
struct DemoItem
{
    qint64 id = 0;
    qint64 taskId = 0;
    QString name;
    QString details;
    bool isAudit = false;
    QDateTime dateCreated;
    std::optional<QDateTime> dateUpdated;
    int itemStatusId = 3; // 1 Completed, 2 Incidents, 3 Open
    std::optional<QString> qrCode;
};

} // namespace ravelin
