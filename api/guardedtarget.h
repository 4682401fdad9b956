#pragma once

#include <memory>

namespace ravelin {

template<class T>
class GuardedPointer;

// Base of the interfaces that the library calls without owning the object
// behind them: the host application's delegate and the network manager's
// delegate. A GuardedPointer to such an object reads null from the moment the
// object is destroyed, as QPointer does for QObjects, so a host that destroys
// its delegate before the library is never called through a dangling pointer.
// Used on the main thread.
class GuardedTarget
{
public:
    // A copy is another object with a lifetime of its own.
    GuardedTarget(const GuardedTarget &) { }
    // Assigning keeps this object's own lifetime (and its guard) as it is: nothing is copied.
    GuardedTarget &operator=(const GuardedTarget &) { return *this; } // NOLINT(bugprone-unhandled-self-assignment)

protected:
    GuardedTarget() = default;
    ~GuardedTarget() = default;

private:
    template<class T>
    friend class GuardedPointer;

    // Lives exactly as long as the object; holders watch it through weak references.
    std::shared_ptr<const bool> m_alive = std::make_shared<const bool>(true);
};

} // namespace ravelin
