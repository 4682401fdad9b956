#pragma once

#include "host/screen.h"

#include <QVariant>

#include <optional>

namespace ravelin {

class TaskUpdateEvent;

// A screen that reacts to the host's task update events and emergency flag while
// it is visible: it observes both notifications from the moment it is about to
// appear to the moment it is about to disappear.
class RavelinEventVC : public Screen
{
    Q_OBJECT

public:
    explicit RavelinEventVC(QWidget *parent = nullptr);

    // The task this screen shows, if it shows one.
    [[nodiscard]] std::optional<qint64> taskID() const { return m_taskID; }
    void setTaskID(std::optional<qint64> id) { m_taskID = id; }

    void viewWillAppear() override;
    void viewWillDisappear() override;

    // "TaskEventNotification": an event about the shown task is told to the user,
    // then the screen leaves for the dashboard. Other events are ignored.
    virtual void receivedTaskEvent(const QVariant &object);
    // "EmergencyUpdateEvent": a true flag turns the navigation bar red, false
    // restores the standard colour; anything but a bool is ignored.
    virtual void updateEmergencyEvent(const QVariant &object);

protected:
    // The event carried by a notification object, if it carries one.
    [[nodiscard]] static std::shared_ptr<TaskUpdateEvent> eventFrom(const QVariant &object);
    // Shows the event alert for the environment's event delay, then runs the completion.
    void presentEventAlert(const TaskUpdateEvent &event, std::function<void()> completion);

private:
    std::optional<qint64> m_taskID;
};

} // namespace ravelin
