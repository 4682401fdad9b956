#pragma once

namespace ravelin {

// How the dashboard talks to its host: the panel button and the swipe.
class DashboardVCDelegate
{
public:
    virtual ~DashboardVCDelegate() = default;
    virtual void didSwipe(bool isShown) = 0;
};

} // namespace ravelin
