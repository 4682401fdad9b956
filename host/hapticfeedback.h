#pragma once

namespace ravelin {

// Tells the worker through the hand that something happened (a code was read).
// The host supplies the platform's vibration; without one nothing is felt.
class HapticFeedback
{
public:
    virtual ~HapticFeedback() = default;
    virtual void vibrate() = 0;
};

} // namespace ravelin
