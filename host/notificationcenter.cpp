#include "host/notificationcenter.h"

#include <QPointer>

#include <algorithm>

namespace ravelin {

struct NotificationCenter::Registration
{
    QPointer<QObject> observer;
    const QObject *observerKey = nullptr; // identity, still valid after the observer is gone
    QString name;
    Handler handler;
    bool active = true;
};

NotificationCenter::NotificationCenter(QObject *parent)
    : QObject(parent)
{ }

NotificationCenter::~NotificationCenter()
{
    for (const auto &registration : std::as_const(m_registrations))
        registration->active = false;
}

NotificationCenter &NotificationCenter::defaultCenter()
{
    static NotificationCenter center;
    return center;
}

void NotificationCenter::post(const QString &name, const QVariant &object)
{
    // A copy, so that handlers may add or remove observers while we deliver.
    const auto snapshot = m_registrations;
    for (const auto &registration : snapshot) {
        if (!registration->active || registration->name != name || registration->observer.isNull())
            continue;
        registration->handler(object);
    }
}

void NotificationCenter::addObserver(QObject *observer, const QString &name, Handler handler)
{
    if (observer == nullptr || !handler)
        return;

    const bool known
        = std::any_of(m_registrations.cbegin(), m_registrations.cend(),
                      [observer](const auto &registration) { return registration->observerKey == observer; });
    if (!known) {
        connect(observer, &QObject::destroyed, this, [this, observer] { forget(observer); });
    }

    auto registration = std::make_shared<Registration>();
    registration->observer = observer;
    registration->observerKey = observer;
    registration->name = name;
    registration->handler = std::move(handler);
    m_registrations.append(std::move(registration));
}

void NotificationCenter::removeObserver(QObject *observer, const QString &name)
{
    removeWhere([observer, &name](const Registration &registration) {
        return registration.observerKey == observer && registration.name == name;
    });
    const bool stillKnown
        = std::any_of(m_registrations.cbegin(), m_registrations.cend(),
                      [observer](const auto &registration) { return registration->observerKey == observer; });
    if (!stillKnown && observer != nullptr)
        disconnect(observer, &QObject::destroyed, this, nullptr);
}

void NotificationCenter::removeObserver(QObject *observer)
{
    forget(observer);
    if (observer != nullptr)
        disconnect(observer, &QObject::destroyed, this, nullptr);
}

int NotificationCenter::observerCount(const QString &name) const
{
    return static_cast<int>(std::count_if(m_registrations.cbegin(), m_registrations.cend(),
                                          [&name](const auto &registration) { return registration->name == name; }));
}

bool NotificationCenter::hasObserver(const QObject *observer, const QString &name) const
{
    return std::any_of(m_registrations.cbegin(), m_registrations.cend(), [observer, &name](const auto &registration) {
        return registration->observerKey == observer && registration->name == name;
    });
}

void NotificationCenter::forget(const QObject *observer)
{
    removeWhere([observer](const Registration &registration) { return registration.observerKey == observer; });
}

void NotificationCenter::removeWhere(const std::function<bool(const Registration &)> &matches)
{
    m_registrations.removeIf([&matches](const std::shared_ptr<Registration> &registration) {
        if (!matches(*registration))
            return false;
        registration->active = false;
        return true;
    });
}

} // namespace ravelin
