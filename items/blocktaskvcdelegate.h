#pragma once

namespace ravelin {

// How the block task screen reports that the task has been blocked.
class BlockTaskVCDelegate
{
public:
    virtual ~BlockTaskVCDelegate() = default;
    virtual void didBlockTask() = 0;
};

} // namespace ravelin
