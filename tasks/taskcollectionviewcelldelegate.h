#pragma once

#include "tasks/task.h"

namespace ravelin {

// How a task card reaches the screen that shows it: the card's acknowledge
// button hands over the card's task.
class TaskCollectionViewCellDelegate
{
public:
    virtual ~TaskCollectionViewCellDelegate() = default;
    virtual void didTapAcknowledge(const TaskPtr &task) = 0;
};

} // namespace ravelin
