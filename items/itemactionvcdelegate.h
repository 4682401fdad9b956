#pragma once

namespace ravelin {

// How the item action screen reports the result of its item status update.
class ItemActionVCDelegate
{
public:
    virtual ~ItemActionVCDelegate() = default;
    virtual void didUpdateItemStatus(bool success) = 0;
};

} // namespace ravelin
