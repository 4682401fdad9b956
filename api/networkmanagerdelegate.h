#pragma once

#include "api/guardedtarget.h"

namespace ravelin {

class RavelinNavVCDelegate;

// The navigation host as seen by the network manager: through it the manager
// reaches the host application's delegate. The manager does not own it and
// stops using it once it is destroyed (see GuardedTarget).
class NetworkManagerDelegate : public GuardedTarget
{
public:
    virtual ~NetworkManagerDelegate() = default;
    [[nodiscard]] virtual RavelinNavVCDelegate *hostDelegate() const = 0;
};

} // namespace ravelin
