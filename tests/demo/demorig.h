#pragma once

#include "demo/app/demohostwindow.h"
#include "demo/app/embeddedsetup.h"
#include "demo/app/switchablenetworkaccess.h"
#include "demo/server/demodata.h"
#include "demo/server/demoserver.h"
#include "host/notificationcenter.h"

#include <QSettings>
#include <QTemporaryDir>

namespace ravelin::test {

// The demo deployment on a loopback port, with what a demo host window needs
// around it: settings in a folder of their own, the switchable network and a
// notification centre. The caller starts the server.
struct DemoRig
{
    DemoClock clock = systemDemoClock();
    DemoData data = DemoData::seeded(clock());
    DemoServer server{data, clock};
    QTemporaryDir dir;
    QSettings settings{dir.filePath(QStringLiteral("defaults.ini")), QSettings::IniFormat};
    SwitchableNetworkAccess network;
    NotificationCenter center;

    // As the demo sets its host up.
    [[nodiscard]] HostSetup setup() const { return embeddedSetup(server, data); }

    [[nodiscard]] DemoHostWindow::Environment environment()
    {
        return DemoHostWindow::Environment{&settings, &network, &center, systemClock()};
    }
};

} // namespace ravelin::test
