#include "filter/filtervm.h"

#include "api/fatalerror.h"

#include <algorithm>

namespace ravelin {

namespace {
template<class T>
T at(const QList<T> &list, qint64 index, const char *what)
{
    if (index < 0 || index >= list.size())
        fatalError(
            QStringLiteral("%1 segment %2 is outside 0...%3").arg(QLatin1String(what)).arg(index).arg(list.size() - 1),
            "FilterVM");
    return list.at(index);
}
} // namespace

FilterVM::FilterVM(std::shared_ptr<TaskFilterData> filterData, Clock clock)
    : m_filterData(std::move(filterData))
    , m_clock(std::move(clock))
{
    if (!m_filterData)
        fatalError(QStringLiteral("The filter screen needs the shared filter data"), "FilterVM");
    m_changedFilterConfig = m_filterData->filteringConfig;
    m_changedSortConfig = m_filterData->sortingConfig;
}

void FilterVM::applyChanges()
{
    m_filterData->filteringConfig = m_changedFilterConfig;
    m_filterData->sortingConfig = m_changedSortConfig;
}

void FilterVM::takeChoices(const FilterChoices &choices, const Settings &settings)
{
    const QString name = choices.categoryText.isEmpty() ? QStringLiteral("All") : choices.categoryText;
    const auto category = std::find_if(settings.taskCategory.cbegin(), settings.taskCategory.cend(),
                                       [&name](const TaskCategoryDefinition &c) { return c.name == name; });
    if (category != settings.taskCategory.cend())
        m_changedFilterConfig.selectedCategory = *category;
    m_changedFilterConfig.dateEnd = choices.dateEnd;
    m_changedFilterConfig.dateStart = choices.dateStart;
    m_changedFilterConfig.selectedPriority = priorityAt(choices.priorityIndex);
    m_changedSortConfig.sortKey = sortKeyAt(choices.sortKeyIndex);
    m_changedSortConfig.sortOrder = sortOrderAt(choices.sortOrderIndex);
}

DateLimits FilterVM::dateLimits(const QDateTime &start, const QDateTime &end) const
{
    // Calendar arithmetic, as for the defaults: tomorrow at this time of day.
    const QDateTime tomorrow = toDateTime(m_clock()).toLocalTime().addDays(1).toUTC();
    return DateLimits{end, start, tomorrow};
}

QString FilterVM::dateText(const QDateTime &date)
{
    return date.toLocalTime().toString(QStringLiteral("yyyy/MM/dd"));
}

TaskPriority FilterVM::priorityAt(qint64 index)
{
    return at(TaskPriorities::allCases(), index, "Priority");
}

SortKey FilterVM::sortKeyAt(qint64 index) const
{
    return at(m_sortingKeys, index, "Sort key");
}

SortOrder FilterVM::sortOrderAt(qint64 index) const
{
    return at(m_sortingTypes, index, "Sort order");
}

int FilterVM::priorityIndex(TaskPriority priority)
{
    return int(TaskPriorities::allCases().indexOf(priority));
}

int FilterVM::sortKeyIndex(SortKey key) const
{
    return int(m_sortingKeys.indexOf(key));
}

int FilterVM::sortOrderIndex(SortOrder order) const
{
    return int(m_sortingTypes.indexOf(order));
}

} // namespace ravelin
