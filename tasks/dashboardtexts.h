#pragma once

#include "tasks/task.h"
#include "tasks/taskstatus.h"

#include <QColor>
#include <QCoreApplication>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace ravelin {

// The Yes/No question asked before a task changes status from the dashboard.
struct StatusPrompt
{
    QString title;
    QString message;
    // The status id that "Yes" sends.
    qint64 newStatusId = 0;

    friend bool operator==(const StatusPrompt &, const StatusPrompt &) = default;
};

// What a chart is drawn with: one name, value and colour per slice.
struct ChartData
{
    QStringList names;
    QList<int> values;
    QList<QColor> colors;

    friend bool operator==(const ChartData &, const ChartData &) = default;
};

// The dashboard's texts and decisions, free of any widget.
namespace DashboardTexts {

[[nodiscard]] inline QString refreshTitle()
{
    return QCoreApplication::translate("DashboardTexts", "Fetching Task Data ...");
}
[[nodiscard]] inline QString emptyMessage()
{
    return QCoreApplication::translate("DashboardTexts", "No item matching filter description");
}
[[nodiscard]] inline QString overallChartTitle()
{
    return QCoreApplication::translate("DashboardTexts", "Tasks");
}
[[nodiscard]] inline QString fetchFailureTitle()
{
    return QCoreApplication::translate("DashboardTexts", "The operation couldn't be completed.");
}
[[nodiscard]] inline QString fetchFailureMessage()
{
    return QCoreApplication::translate("DashboardTexts", "Please contact technical support if the problem continues.");
}
[[nodiscard]] inline QString fetchFailureAction()
{
    return QCoreApplication::translate("DashboardTexts", "OK");
}
[[nodiscard]] inline QString itemsLoadingTitle()
{
    return QCoreApplication::translate("DashboardTexts", "Items Loading");
}
[[nodiscard]] inline QString itemsLoadingMessage()
{
    return QCoreApplication::translate("DashboardTexts", "Couldn't load task items");
}
[[nodiscard]] inline QString acknowledgeTitle()
{
    return QCoreApplication::translate("DashboardTexts", "Acknowledge");
}
[[nodiscard]] inline QString promptYes()
{
    return QCoreApplication::translate("DashboardTexts", "Yes");
}
[[nodiscard]] inline QString promptNo()
{
    return QCoreApplication::translate("DashboardTexts", "No");
}
inline const QString tableName = QStringLiteral("TasksDashboardTableView");
inline const QString showChecklistItems = QStringLiteral("ShowChecklistItems");
inline const QString showFilterView = QStringLiteral("ShowFilterView");
// The text that stands in for a section without a status.
inline const QString unknownStatus = QStringLiteral("Unknown");

// The colour names of the statuses, in status order.
[[nodiscard]] const QStringList &statusColorNames();

// The status text upper-cased, then " (" + count + " " + "task" (count above
// zero) or "tasks" + ")": "IN PROGRESS (2 task)".
[[nodiscard]] QString sectionHeader(std::optional<TaskStatus> status, qsizetype count);

// "statusCell_" + the status text without its spaces: "statusCell_InProgress".
[[nodiscard]] QString statusCellName(std::optional<TaskStatus> status);

// The status's name in code: "in_progress", "complete", ...
[[nodiscard]] QString statusCaseName(TaskStatus status);

// "task_" + the status's case name: "task_in_progress".
[[nodiscard]] QString taskNameIdentifier(TaskStatus status);

// Assigned, acknowledged and blocked tasks ask before they open.
[[nodiscard]] bool promptsBeforeOpening(TaskStatus status);

// The question for a task in a prompting status; nothing for the others.
[[nodiscard]] std::optional<StatusPrompt> statusPrompt(const Task &task);

// The acknowledge button shows on cards whose status reads "Assigned".
[[nodiscard]] bool showsAcknowledgeButton(const Task &task);

// What a card says to a screen reader after the task's name: its status,
// priority, category and progress, "In Progress, High priority, Pumps, 50% done".
[[nodiscard]] QString cardDescription(const Task &task);

// What a row of cards is called for a screen reader: "In Progress: 2 tasks".
[[nodiscard]] QString sectionAccessibleName(std::optional<TaskStatus> status, qsizetype count);

// The overall chart: the status texts, the counts per status and the status
// colours.
[[nodiscard]] ChartData overallChart(const QList<int> &statusCounts);

// A card's item chart: completed, incidents and open items in their colours.
[[nodiscard]] ChartData itemsChart(const TaskProgress &progress);

} // namespace DashboardTexts

} // namespace ravelin
