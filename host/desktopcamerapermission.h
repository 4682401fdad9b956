#pragma once

#include "host/camerapermission.h"

namespace ravelin {

// Desktops ask nobody: the camera may be used, and there is no settings page.
class DesktopCameraPermission : public CameraPermission
{
public:
    [[nodiscard]] Status status() const override { return Status::authorized; }
    void request(std::function<void(bool granted)> completion) override;
    void openSettings() override;
};

} // namespace ravelin
