#include "tasks/dashboardtexts.h"

#include "items/itemstatus.h"
#include "resources/namedcolors.h"
#include "tasks/dashboardvm.h"

#include <QCoreApplication>

#include <algorithm>
#include <limits>

namespace ravelin::DashboardTexts {

namespace {

QColor namedColor(const QString &name)
{
    return NamedColors::color(name, QColor(Qt::gray));
}

int clampedCount(qint64 value)
{
    return static_cast<int>(std::clamp<qint64>(value, 0, std::numeric_limits<int>::max()));
}

} // namespace

const QStringList &statusColorNames()
{
    static const QStringList names{ColorNames::customGray,   ColorNames::customRed,  ColorNames::customOrange,
                                   ColorNames::customYellow, ColorNames::customBlue, ColorNames::customGreen};
    return names;
}

QString sectionHeader(std::optional<TaskStatus> status, qsizetype count)
{
    const QString text
        = status ? TaskStatuses::text(*status) : QCoreApplication::translate("DashboardTexts", "Unknown");
    // The singular is what a non-empty section reads; the plural only shows for
    // zero, which a section never has.
    const QString header = count > 0 ? QCoreApplication::translate("DashboardTexts", "%1 (%2 task)")
                                     : QCoreApplication::translate("DashboardTexts", "%1 (%2 tasks)");
    return header.arg(text.toUpper()).arg(count);
}

QString statusCellName(std::optional<TaskStatus> status)
{
    QString text = status ? TaskStatuses::rawValue(*status) : unknownStatus;
    text.remove(QLatin1Char(' '));
    return QStringLiteral("statusCell_") + text;
}

QString statusCaseName(TaskStatus status)
{
    switch (status) {
    case TaskStatus::unassigned: return QStringLiteral("unassigned");
    case TaskStatus::assigned: return QStringLiteral("assigned");
    case TaskStatus::acknowledged: return QStringLiteral("acknowledged");
    case TaskStatus::in_progress: return QStringLiteral("in_progress");
    case TaskStatus::blocked: return QStringLiteral("blocked");
    case TaskStatus::complete: return QStringLiteral("complete");
    }
    return {};
}

QString taskNameIdentifier(TaskStatus status)
{
    return QStringLiteral("task_") + statusCaseName(status);
}

bool promptsBeforeOpening(TaskStatus status)
{
    return status == TaskStatus::assigned || status == TaskStatus::acknowledged || status == TaskStatus::blocked;
}

std::optional<StatusPrompt> statusPrompt(const Task &task)
{
    if (!promptsBeforeOpening(task.currentStatus))
        return std::nullopt;
    const std::optional<qint64> next = DashboardVM::nextStatusId(task.currentStatus);
    if (!next)
        return std::nullopt;
    const QString quoted = QLatin1Char('`') + task.name + QLatin1Char('`');
    switch (task.currentStatus) {
    case TaskStatus::assigned:
        return StatusPrompt{QCoreApplication::translate("DashboardTexts", "Acknowledge task %1").arg(quoted),
                            QCoreApplication::translate("DashboardTexts",
                                                        "The task is currently assigned to you, but requires "
                                                        "acknowledgment from your part. Do you want to mark it as "
                                                        "acknowledged?"),
                            *next};
    case TaskStatus::acknowledged:
        return StatusPrompt{
            QCoreApplication::translate("DashboardTexts", "Start task %1").arg(quoted),
            QCoreApplication::translate("DashboardTexts",
                                        "The task is currently acknowledged. Do you want to start working on it?"),
            *next};
    case TaskStatus::blocked:
        return StatusPrompt{QCoreApplication::translate("DashboardTexts", "Unblock task %1").arg(quoted),
                            QCoreApplication::translate(
                                "DashboardTexts", "The task is currently blocked. Do you want to start working on it?"),
                            *next};
    case TaskStatus::unassigned:
    case TaskStatus::in_progress:
    case TaskStatus::complete: break;
    }
    return std::nullopt;
}

bool showsAcknowledgeButton(const Task &task)
{
    return TaskStatuses::rawValue(task.currentStatus) == QStringLiteral("Assigned");
}

QString cardDescription(const Task &task)
{
    QStringList parts{
        TaskStatuses::text(task.currentStatus),
        QCoreApplication::translate("DashboardTexts", "%1 priority").arg(TaskPriorities::text(task.priority))};
    if (!task.taskCategory.name.isEmpty())
        parts.append(task.taskCategory.name);
    parts.append(QCoreApplication::translate("DashboardTexts", "%1% done").arg(task.progress.total));
    return parts.join(QStringLiteral(", "));
}

QString sectionAccessibleName(std::optional<TaskStatus> status, qsizetype count)
{
    const QString text = status ? TaskStatuses::text(*status) : unknownStatus;
    return count == 1 ? QCoreApplication::translate("DashboardTexts", "%1: 1 task").arg(text)
                      : QCoreApplication::translate("DashboardTexts", "%1: %2 tasks").arg(text).arg(count);
}

ChartData overallChart(const QList<int> &statusCounts)
{
    ChartData chart;
    const QList<TaskStatus> &statuses = TaskStatuses::allCases();
    for (qsizetype i = 0; i < statuses.size(); ++i) {
        chart.names.append(TaskStatuses::text(statuses.at(i)));
        chart.values.append(statusCounts.value(i, 0));
        chart.colors.append(namedColor(statusColorNames().at(i)));
    }
    return chart;
}

ChartData itemsChart(const TaskProgress &progress)
{
    return ChartData{
        {ItemStatuses::text(ItemStatus::ok), ItemStatuses::text(ItemStatus::nok), ItemStatuses::text(ItemStatus::open)},
        {clampedCount(progress.ok), clampedCount(progress.nok), clampedCount(progress.open)},
        {namedColor(ColorNames::customGreen), namedColor(ColorNames::customRed), namedColor(ColorNames::customGray)}};
}

} // namespace ravelin::DashboardTexts
