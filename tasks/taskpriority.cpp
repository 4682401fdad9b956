#include "tasks/taskpriority.h"

#include <QCoreApplication>

#include "api/fatalerror.h"

namespace ravelin::TaskPriorities {

const QList<TaskPriority> &allCases()
{
    static const QList<TaskPriority> cases{TaskPriority::highest, TaskPriority::high, TaskPriority::medium,
                                           TaskPriority::low, TaskPriority::all};
    return cases;
}

QString rawValue(TaskPriority priority)
{
    switch (priority) {
    case TaskPriority::highest: return QStringLiteral("Highest");
    case TaskPriority::high: return QStringLiteral("High");
    case TaskPriority::medium: return QStringLiteral("Medium");
    case TaskPriority::low: return QStringLiteral("Low");
    case TaskPriority::all: return QStringLiteral("All");
    }
    return {};
}

std::optional<TaskPriority> fromRawValue(const QString &text)
{
    for (TaskPriority p : allCases()) {
        if (rawValue(p) == text)
            return p;
    }
    return std::nullopt;
}

TaskPriority fromWireValue(qint64 value)
{
    if (value < 0 || value >= allCases().size())
        fatalError(QStringLiteral("Task priority %1 is outside 0...4").arg(value), "TaskPriority");
    return allCases().at(value);
}

int wireValue(TaskPriority priority)
{
    return int(allCases().indexOf(priority));
}

int sortRank(TaskPriority priority)
{
    // Walks allCases comparing texts, as the ranking is defined by position.
    const QString text = rawValue(priority);
    for (int i = 0; i < allCases().size(); ++i) {
        if (rawValue(allCases().at(i)) == text)
            return i + 1;
    }
    return 0;
}

// The texts a translation catalogue holds for TaskPriority.
[[maybe_unused]] constexpr const char *taskPriorityTexts[]
    = {QT_TRANSLATE_NOOP("TaskPriority", "Highest"), QT_TRANSLATE_NOOP("TaskPriority", "High"),
       QT_TRANSLATE_NOOP("TaskPriority", "Medium"), QT_TRANSLATE_NOOP("TaskPriority", "Low"),
       QT_TRANSLATE_NOOP("TaskPriority", "All")};

QString text(TaskPriority value)
{
    return QCoreApplication::translate("TaskPriority", rawValue(value).toUtf8().constData());
}

} // namespace ravelin::TaskPriorities
