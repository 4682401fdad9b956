#pragma once

#include <functional>

namespace ravelin {

// Whether the library may use the camera (for scanning checkpoints). Hosts on
// platforms with a permission model supply theirs; DesktopCameraPermission
// stands in where there is none.
class CameraPermission
{
public:
    enum class Status { authorized, denied, notDetermined };

    virtual ~CameraPermission() = default;
    [[nodiscard]] virtual Status status() const = 0;
    // Asks the worker; the completion runs once, on the main thread.
    virtual void request(std::function<void(bool granted)> completion) = 0;
    // Opens the platform's settings for the application, where it has such a page.
    virtual void openSettings() = 0;
};

} // namespace ravelin
