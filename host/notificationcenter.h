#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>

namespace ravelin {

// Names of the notifications that the host application posts to the framework.
namespace NotificationNames {
// Object: a std::shared_ptr<TaskUpdateEvent>.
inline const QString taskEvent = QStringLiteral("TaskEventNotification");
// Object: a bool, true while an emergency is in force.
inline const QString emergencyUpdate = QStringLiteral("EmergencyUpdateEvent");
} // namespace NotificationNames

// Broadcasts named notifications, each carrying one object, to the observers
// registered for that name. Delivery is synchronous, on the posting thread, in
// the order in which the observers were added. An observer is removed
// automatically when it is destroyed. The centre is meant to be used from the
// main thread only.
class NotificationCenter : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<void(const QVariant &object)>;

    explicit NotificationCenter(QObject *parent = nullptr);
    ~NotificationCenter() override;

    // The one centre of the process, through which the host reaches the screens.
    [[nodiscard]] static NotificationCenter &defaultCenter();

    // Calls every handler registered for the name, oldest first. Observers
    // added while a notification is being delivered receive the next one.
    void post(const QString &name, const QVariant &object = {});

    // Registers a handler. The same observer may register several handlers,
    // also for the same name; each is called.
    void addObserver(QObject *observer, const QString &name, Handler handler);

    // Removes every handler of the observer for that name.
    void removeObserver(QObject *observer, const QString &name);
    // Removes every handler of the observer.
    void removeObserver(QObject *observer);

    [[nodiscard]] int observerCount(const QString &name) const;
    [[nodiscard]] bool hasObserver(const QObject *observer, const QString &name) const;

private:
    struct Registration;

    void forget(const QObject *observer);
    void removeWhere(const std::function<bool(const Registration &)> &matches);

    QList<std::shared_ptr<Registration>> m_registrations;
};

} // namespace ravelin
