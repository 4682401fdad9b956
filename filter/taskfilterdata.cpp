#include "filter/taskfilterdata.h"

#include "api/fatalerror.h"

namespace ravelin {

std::shared_ptr<TaskFilterData> TaskFilterData::makeDefault(const Clock &clock, const Settings &settings)
{
    if (settings.taskCategory.isEmpty())
        fatalError(QStringLiteral("There is no task category to start the filter with"), "TaskFilterData");

    // Day arithmetic in the local calendar, so that a window across a change of
    // daylight saving time still starts at the same time of day.
    const QDateTime now = toDateTime(clock()).toLocalTime();
    auto data = std::make_shared<TaskFilterData>();
    data->filteringConfig.selectedPriority = TaskPriority::all;
    data->filteringConfig.selectedCategory = settings.taskCategory.first();
    data->filteringConfig.dateStart = now.addDays(-60).toUTC();
    data->filteringConfig.dateEnd = now.addDays(1).toUTC();
    data->sortingConfig = SortConfiguration{SortKey::date, SortOrder::descending};
    return data;
}

} // namespace ravelin
