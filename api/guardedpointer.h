#pragma once

#include "api/guardedtarget.h"

#include <memory>
#include <type_traits>

namespace ravelin {

// A non-owning pointer to a GuardedTarget that becomes null when the target is
// destroyed (see GuardedTarget). Reads like a plain pointer.
template<class T>
class GuardedPointer
{
    static_assert(std::is_base_of_v<GuardedTarget, T>, "GuardedPointer needs a GuardedTarget");

public:
    GuardedPointer() = default;
    GuardedPointer(T *target) // NOLINT(google-explicit-constructor): assigned like a plain pointer
        : m_target(target)
        , m_alive(target ? std::weak_ptr<const bool>(static_cast<const GuardedTarget *>(target)->m_alive)
                         : std::weak_ptr<const bool>())
    { }

    // The target, or null when none was set or it is gone.
    [[nodiscard]] T *get() const { return m_alive.expired() ? nullptr : m_target; }
    operator T *() const { return get(); } // NOLINT(google-explicit-constructor)
    T *operator->() const { return get(); }

private:
    T *m_target = nullptr;
    std::weak_ptr<const bool> m_alive;
};

} // namespace ravelin
