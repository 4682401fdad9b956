#pragma once

#include "demo/app/hostsetup.h"
#include "demo/server/demodata.h"
#include "demo/server/demoserver.h"

namespace ravelin {

// The host's setup against the embedded demo server: its address and
// certificate, the workers who may sign in and every task of the deployment.
// Header only: the host's library does not link the demo server.
inline HostSetup embeddedSetup(const DemoServer &server, const DemoData &data)
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

} // namespace ravelin
