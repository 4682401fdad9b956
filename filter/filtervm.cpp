#include "filter/filtervm.h"

#include "api/fatalerror.h"

namespace ravelin {

namespace {
template<class T>
T at(const QList<T> &list, qint64 index, const char *what)
{
    if (index < 0 || index >= list.size())
        fatalError(QStringLiteral("%1 segment %2 is outside 0...%3").arg(QLatin1String(what)).arg(index).arg(list.size() - 1),
                   "FilterVM");
    return list.at(index);
}
} // namespace

FilterVM::FilterVM(std::shared_ptr<TaskFilterData> filterData)
    : m_filterData(std::move(filterData))
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
