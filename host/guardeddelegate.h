#pragma once

#include <QObject>
#include <QPointer>

namespace ravelin {

// A screen's delegate, held so that a delegate that is a QObject and has been
// destroyed reads as none: a screen that outlives the screen it reports to
// never calls into freed memory. Delegates that are not QObjects are held as
// they are.
template<class Delegate>
class GuardedDelegate
{
public:
    GuardedDelegate() = default;

    GuardedDelegate &operator=(Delegate *delegate)
    {
        m_delegate = delegate;
        m_object = dynamic_cast<QObject *>(delegate);
        m_isObject = m_object != nullptr;
        return *this;
    }

    [[nodiscard]] Delegate *get() const { return m_isObject && !m_object ? nullptr : m_delegate; }
    [[nodiscard]] Delegate *operator->() const { return get(); }
    explicit operator bool() const { return get() != nullptr; }

private:
    Delegate *m_delegate = nullptr;
    QPointer<QObject> m_object;
    bool m_isObject = false;
};

} // namespace ravelin
