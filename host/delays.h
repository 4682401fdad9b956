#pragma once

#include <chrono>

namespace ravelin {

// How long the library waits where it waits on purpose: alerts without buttons
// stay up for a short or a long while, a task event's alert for a moment, and
// the QR scanner shows what it read before handing it over. Part of the
// navigation host's environment, so that tests can run them at once.
struct Delays
{
    std::chrono::milliseconds shortAlert{1000};
    std::chrono::milliseconds longAlert{2000};
    std::chrono::milliseconds eventAlert{1000};
    std::chrono::milliseconds scannerHandOver{1000};

    // Every delay the same (zero: as soon as the event loop comes round).
    [[nodiscard]] static constexpr Delays uniform(std::chrono::milliseconds delay)
    {
        return Delays{delay, delay, delay, delay};
    }
};

} // namespace ravelin
