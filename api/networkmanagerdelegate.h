#pragma once

namespace ravelin {

class RavelinNavVCDelegate;

// The navigation host as seen by the network manager: through it the manager
// reaches the host application's delegate.
class NetworkManagerDelegate
{
public:
    virtual ~NetworkManagerDelegate() = default;
    [[nodiscard]] virtual RavelinNavVCDelegate *hostDelegate() const = 0;
};

} // namespace ravelin
