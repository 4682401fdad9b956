#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace ravelin {

// What the demo host runs against: the deployment's address and certificate,
// the people who may sign in, the tasks its menu can post events about, and,
// when the host was pointed at a server with a ready token, that session.
struct HostSetup
{
    struct Worker
    {
        qint64 id = 0;
        QString name;
        QString icon;
        QString role;
    };

    struct TaskChoice
    {
        qint64 id = 0;
        QString name;
        std::optional<qint64> assignedUserId;
    };

    // A session given on the command line: no sign-in request is made.
    struct Preset
    {
        qint64 userId = 0;
        QString token;
    };

    QString baseUrl; // host:port, no scheme
    QByteArray certificatePem; // the one certificate to trust; empty accepts any
    QList<Worker> workers;
    // Empty: the menu offers the tasks the dashboard has loaded.
    QList<TaskChoice> tasks;
    std::optional<Preset> preset;
};

} // namespace ravelin
