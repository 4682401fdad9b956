#pragma once

#include "api/clock.h"
#include "api/settings.h"
#include "filter/datelimits.h"
#include "filter/filterchoices.h"
#include "filter/sortconfiguration.h"
#include "filter/sortkey.h"
#include "filter/taskfilterconfiguration.h"
#include "filter/taskfilterdata.h"
#include "tasks/taskpriority.h"

#include <QList>

#include <memory>

namespace ravelin {

// The edits of one visit to the filter screen. They start as copies of the shared
// choices and reach the shared object only through applyChanges(); leaving the
// screen without applying discards them.
class FilterVM
{
public:
    // `clock` tells "now" for the latest end date.
    explicit FilterVM(std::shared_ptr<TaskFilterData> filterData, Clock clock = systemClock());

    // Titles of the sort-key and sort-order segments, all cases in order.
    [[nodiscard]] const QList<SortKey> &sortingKeys() const { return m_sortingKeys; }
    [[nodiscard]] const QList<SortOrder> &sortingTypes() const { return m_sortingTypes; }
    [[nodiscard]] const std::shared_ptr<TaskFilterData> &filterData() const { return m_filterData; }

    [[nodiscard]] const TaskFilterConfiguration &changedFilterConfig() const { return m_changedFilterConfig; }
    [[nodiscard]] TaskFilterConfiguration &changedFilterConfig() { return m_changedFilterConfig; }
    [[nodiscard]] const SortConfiguration &changedSortConfig() const { return m_changedSortConfig; }
    [[nodiscard]] SortConfiguration &changedSortConfig() { return m_changedSortConfig; }

    // Writes both edited configurations into the shared object at once.
    void applyChanges();

    // Takes what the screen shows into the edited configurations, in this order:
    // the category named by the text ("All" when the text is empty; an unknown
    // name keeps the category as it was), the end and start dates, the priority,
    // then the sort key and order at their segment positions. A position outside
    // its segments stops the process.
    void takeChoices(const FilterChoices &choices, const Settings &settings = Settings::current());

    // The pickers' bounds for the dates they show: the start up to the end, the
    // end from the start up to one calendar day after now (local calendar).
    [[nodiscard]] DateLimits dateLimits(const QDateTime &start, const QDateTime &end) const;

    // A date as the date fields show it: "yyyy/MM/dd", in local time.
    [[nodiscard]] static QString dateText(const QDateTime &date);

    // Segment positions of the filter screen. An index outside the segments (no
    // segment selected) stops the process.
    [[nodiscard]] static TaskPriority priorityAt(qint64 index);
    [[nodiscard]] SortKey sortKeyAt(qint64 index) const;
    [[nodiscard]] SortOrder sortOrderAt(qint64 index) const;
    [[nodiscard]] static int priorityIndex(TaskPriority priority);
    [[nodiscard]] int sortKeyIndex(SortKey key) const;
    [[nodiscard]] int sortOrderIndex(SortOrder order) const;

private:
    QList<SortKey> m_sortingKeys = SortKeys::allCases();
    QList<SortOrder> m_sortingTypes = SortOrders::allCases();
    TaskFilterConfiguration m_changedFilterConfig;
    SortConfiguration m_changedSortConfig;
    std::shared_ptr<TaskFilterData> m_filterData;
    Clock m_clock;
};

} // namespace ravelin
