#pragma once

#include "demo/server/democlock.h"
#include "demo/server/demodata.h"
#include "demo/server/demouser.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QtGlobal>

#include <memory>
#include <optional>

namespace ravelin {

// The demo deployment served over HTTPS on 127.0.0.1 from a background
// thread, with a self-signed certificate made when the server is created.
// State (task statuses, item results, comments, pictures, tokens) is kept for
// the life of the object, across stop() and start(). See DemoApi for the routes.
class DemoServer
{
public:
    DemoServer(DemoData data, DemoClock clock);
    ~DemoServer();
    DemoServer(const DemoServer &) = delete;
    DemoServer &operator=(const DemoServer &) = delete;

    // Listens on 127.0.0.1:`port` (0: an ephemeral port) and returns once the
    // server accepts connections; false when the port cannot be bound or the
    // server is already running.
    [[nodiscard]] bool start(quint16 port = 0);
    // Stops serving and waits (bounded) for the server threads.
    void stop();

    [[nodiscard]] bool isRunning() const;
    // The bound port; 0 while stopped.
    [[nodiscard]] quint16 port() const;
    // "127.0.0.1:<port>", no scheme: the base URL of the client's session data.
    [[nodiscard]] QString baseUrl() const;
    // The server's certificate in PEM form, for clients that want to trust exactly it.
    [[nodiscard]] QByteArray certificatePem() const;

    // Issues a bearer token for a user who may sign in, without a request.
    [[nodiscard]] std::optional<QString> signIn(qint64 userId);
    // Every person of the deployment, field workers and the dispatch desk.
    [[nodiscard]] QList<DemoUser> users() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ravelin
