#pragma once

#include "host/hapticfeedback.h"

namespace ravelin {

// Where the platform offers no vibration: nothing happens.
class SilentHapticFeedback : public HapticFeedback
{
public:
    void vibrate() override { }
};

} // namespace ravelin
