#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace ravelin {

// A task as the deployment stores it; its item counts are computed from its items.
struct DemoTask
{
    qint64 id = 0;
    QString name;
    QString description;
    double latitude = 0.0;
    double longitude = 0.0;
    qint64 ownerId = 0;
    QString ownerAssetName;
    std::optional<qint64> assignedUserId;
    std::optional<qint64> updaterUserId;
    std::optional<QDateTime> dateScheduled;
    QDateTime dateCreated;
    std::optional<QDateTime> dateUpdated;
    int taskStatusId = 1; // 1..6: Unassigned, Assigned, Acknowledged, In Progress, Blocked, Completed
    qint64 taskCategoryId = 0;
    int priority = 2; // 0 Highest .. 3 Low
};

} // namespace ravelin
