#pragma once

#include "api/clock.h"
#include "api/settings.h"
#include "filter/sortconfiguration.h"
#include "filter/taskfilterconfiguration.h"

#include <memory>

namespace ravelin {

// The worker's filter and sort choices. One object is shared by the dashboard's
// view model, its task list and the filter screen's view model, so a choice
// applied on the filter screen is seen by the next fetch and the next sort.
class TaskFilterData
{
public:
    TaskFilterConfiguration filteringConfig;
    SortConfiguration sortingConfig;

    // The choices of a fresh dashboard: all priorities, the first category of the
    // settings (the "All" entry), from 60 calendar days before now to one calendar
    // day after now (local calendar), newest first. An empty category list stops
    // the process.
    [[nodiscard]] static std::shared_ptr<TaskFilterData> makeDefault(const Clock &clock,
                                                                     const Settings &settings = Settings::current());
};

using TaskFilterDataPtr = std::shared_ptr<TaskFilterData>;

} // namespace ravelin
