#include "host/ravelineventvc.h"

#include "host/navigationbar.h"
#include "host/notificationcenter.h"
#include "host/ravelinnavvc.h"
#include "host/taskupdateevent.h"
#include "views/alertpresenter.h"

#include <QPointer>

namespace ravelin {

namespace {
const QColor systemRed(255, 59, 48);
} // namespace

RavelinEventVC::RavelinEventVC(QWidget *parent)
    : Screen(parent)
{ }

void RavelinEventVC::viewWillAppear()
{
    Screen::viewWillAppear();
    NotificationCenter *center = navigationHost() ? navigationHost()->notificationCenter() : nullptr;
    if (!center)
        return;
    center->addObserver(this, NotificationNames::taskEvent, [this](const QVariant &o) { receivedTaskEvent(o); });
    center->addObserver(this, NotificationNames::emergencyUpdate,
                        [this](const QVariant &o) { updateEmergencyEvent(o); });
}

void RavelinEventVC::viewWillDisappear()
{
    if (NotificationCenter *center = navigationHost() ? navigationHost()->notificationCenter() : nullptr) {
        center->removeObserver(this, NotificationNames::taskEvent);
        center->removeObserver(this, NotificationNames::emergencyUpdate);
    }
    Screen::viewWillDisappear();
}

std::shared_ptr<TaskUpdateEvent> RavelinEventVC::eventFrom(const QVariant &object)
{
    if (!object.canConvert<std::shared_ptr<TaskUpdateEvent>>())
        return nullptr;
    return object.value<std::shared_ptr<TaskUpdateEvent>>();
}

void RavelinEventVC::presentEventAlert(const TaskUpdateEvent &event, std::function<void()> completion)
{
    const auto message = event.getAlertMessage();
    AlertPresenter::presentEventAlert(this, message.title, message.subtitle, message.body, delays().eventAlert,
                                      std::move(completion));
}

void RavelinEventVC::receivedTaskEvent(const QVariant &object)
{
    const auto event = eventFrom(object);
    if (!event || !m_taskID || *m_taskID != event->id)
        return;
    // Assigned, unassigned or deleted: the shown task is no longer what it was.
    presentEventAlert(*event, [self = QPointer<RavelinEventVC>(this)] {
        if (!self || !self->navigationHost())
            return;
        RavelinNavVC *host = self->navigationHost();
        if (host->presentedScreen())
            host->dismissPresented([host = QPointer<RavelinNavVC>(host)] {
                if (host)
                    host->popToRoot();
            });
        else
            host->popToRoot();
    });
}

void RavelinEventVC::updateEmergencyEvent(const QVariant &object)
{
    if (object.typeId() != QMetaType::Bool || !navigationHost())
        return;
    RavelinNavVC *host = navigationHost();
    host->navigationBar()->setBarColor(object.toBool() ? systemRed : host->standardBarColor());
}

} // namespace ravelin
