#include "host/desktopcamerapermission.h"

#include <QCoreApplication>
#include <QTimer>

namespace ravelin {

void DesktopCameraPermission::request(std::function<void(bool granted)> completion)
{
    QTimer::singleShot(0, QCoreApplication::instance(), [completion = std::move(completion)] { completion(true); });
}

void DesktopCameraPermission::openSettings()
{
    // No settings page for applications on a desktop.
}

} // namespace ravelin
