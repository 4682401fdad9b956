#pragma once

#include "demo/app/demohostwindow.h"
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

    // As the demo sets its host up: the server, the workers who may sign in and every task.
    [[nodiscard]] HostSetup setup() const
    {
        HostSetup setup;
        setup.baseUrl = server.baseUrl();
        setup.certificatePem = server.certificatePem();
        for (const DemoUser &user : server.users()) {
            if (user.canSignIn)
                setup.workers.append({user.id, user.name, user.icon, QStringLiteral("Field worker")});
        }
        for (const DemoTask &task : data.tasks)
            setup.tasks.append({task.id, task.name, task.assignedUserId});
        return setup;
    }

    [[nodiscard]] DemoHostWindow::Environment environment()
    {
        return DemoHostWindow::Environment{&settings, &network, &center, systemClock()};
    }
};

} // namespace ravelin::test
