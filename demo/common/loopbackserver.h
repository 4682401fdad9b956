#pragma once

#include "demo/common/selfsignedcertificate.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <functional>
#include <memory>

namespace httplib {
struct Request;
struct Response;
} // namespace httplib

namespace ravelin {

// An HTTPS server on 127.0.0.1 with a certificate made for it, serving every
// method through one handler from a background thread. The demo server and the
// tests' server are built on it.
//
// One request per connection, so that no idle keep-alive connection holds a
// server thread when the server stops; a silent connection is dropped after a
// short time, which bounds stop(). The listening socket reuses addresses for a
// quick restart but never shares a bound port (no SO_REUSEPORT).
class LoopbackServer
{
public:
    using Handler = std::function<void(const httplib::Request &, httplib::Response &)>;

    // The handler runs on the server's threads.
    LoopbackServer(SelfSignedCertificate certificate, Handler handler);
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer &) = delete;
    LoopbackServer &operator=(const LoopbackServer &) = delete;

    // Listens on 127.0.0.1:`port` (0: an ephemeral port) and returns once the
    // server accepts connections (bounded wait); false when TLS cannot be set up,
    // the port cannot be bound or the server is already running.
    [[nodiscard]] bool start(quint16 port = 0);
    // Stops serving and waits for the server thread. The server can start again.
    void stop();

    [[nodiscard]] bool isRunning() const;
    // The bound port; 0 while stopped.
    [[nodiscard]] quint16 port() const;
    // "127.0.0.1:<port>", no scheme.
    [[nodiscard]] QString baseUrl() const;
    [[nodiscard]] QByteArray certificatePem() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ravelin
