#include "tasks/taskstatus.h"

#include <QCoreApplication>

#include "api/fatalerror.h"

namespace ravelin::TaskStatuses {

const QList<TaskStatus> &allCases()
{
    static const QList<TaskStatus> cases{TaskStatus::unassigned,  TaskStatus::assigned, TaskStatus::acknowledged,
                                         TaskStatus::in_progress, TaskStatus::blocked,  TaskStatus::complete};
    return cases;
}

QString rawValue(TaskStatus status)
{
    switch (status) {
    case TaskStatus::unassigned: return QStringLiteral("Unassigned");
    case TaskStatus::assigned: return QStringLiteral("Assigned");
    case TaskStatus::acknowledged: return QStringLiteral("Acknowledged");
    case TaskStatus::in_progress: return QStringLiteral("In Progress");
    case TaskStatus::blocked: return QStringLiteral("Blocked");
    case TaskStatus::complete: return QStringLiteral("Completed");
    }
    return {};
}

std::optional<TaskStatus> fromRawValue(const QString &text)
{
    for (TaskStatus s : allCases()) {
        if (rawValue(s) == text)
            return s;
    }
    return std::nullopt;
}

TaskStatus fromServerId(qint64 id)
{
    if (id < 1 || id > allCases().size())
        fatalError(QStringLiteral("Task status id %1 is outside 1...6").arg(id), "TaskStatus");
    return allCases().at(id - 1);
}

int serverId(TaskStatus status)
{
    return int(allCases().indexOf(status)) + 1;
}

// The texts a translation catalogue holds for TaskStatus.
[[maybe_unused]] constexpr const char *taskStatusTexts[]
    = {QT_TRANSLATE_NOOP("TaskStatus", "Unassigned"),   QT_TRANSLATE_NOOP("TaskStatus", "Assigned"),
       QT_TRANSLATE_NOOP("TaskStatus", "Acknowledged"), QT_TRANSLATE_NOOP("TaskStatus", "In Progress"),
       QT_TRANSLATE_NOOP("TaskStatus", "Blocked"),      QT_TRANSLATE_NOOP("TaskStatus", "Completed")};

QString text(TaskStatus value)
{
    return QCoreApplication::translate("TaskStatus", rawValue(value).toUtf8().constData());
}

} // namespace ravelin::TaskStatuses
