#include "demo/common/loopbackserver.h"

#include <httplib.h>

#include <sys/socket.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace ravelin {

namespace {

constexpr size_t kRequestsPerConnection = 1;
constexpr time_t kIdleSeconds = 2;
constexpr size_t kMaxBodyBytes = 32 * 1024 * 1024;
constexpr auto kStartTimeout = std::chrono::seconds(10);

void listeningSocketOptions(socket_t socket)
{
    int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

} // namespace

struct LoopbackServer::Private
{
    Private(SelfSignedCertificate certificate, Handler handler)
        : certificate(std::move(certificate))
        , handler(std::move(handler))
    { }

    SelfSignedCertificate certificate;
    Handler handler;
    std::unique_ptr<httplib::SSLServer> server;
    std::thread thread;
    std::atomic<bool> finished{true};
    quint16 port = 0;
};

LoopbackServer::LoopbackServer(SelfSignedCertificate certificate, Handler handler)
    : d(std::make_unique<Private>(std::move(certificate), std::move(handler)))
{ }

LoopbackServer::~LoopbackServer()
{
    stop();
}

bool LoopbackServer::start(quint16 port)
{
    if (d->server)
        return false;
    auto server = std::make_unique<httplib::SSLServer>(d->certificate.certificate(), d->certificate.privateKey());
    if (!server->is_valid())
        return false;

    const Handler &handler = d->handler;
    const auto serve
        = [&handler](const httplib::Request &request, httplib::Response &response) { handler(request, response); };
    server->Get(".*", serve);
    server->Post(".*", serve);
    server->Put(".*", serve);
    server->Patch(".*", serve);
    server->Delete(".*", serve);
    server->Options(".*", serve);
    server->set_socket_options(listeningSocketOptions);
    server->set_keep_alive_max_count(kRequestsPerConnection);
    server->set_keep_alive_timeout(kIdleSeconds);
    server->set_read_timeout(kIdleSeconds);
    server->set_payload_max_length(kMaxBodyBytes);

    int bound = 0;
    if (port == 0)
        bound = server->bind_to_any_port("127.0.0.1");
    else if (server->bind_to_port("127.0.0.1", port))
        bound = port;
    if (bound <= 0)
        return false;

    httplib::SSLServer *raw = server.get();
    d->finished = false;
    d->thread = std::thread([raw, &finished = d->finished] {
        raw->listen_after_bind();
        finished = true;
    });
    d->server = std::move(server);
    d->port = static_cast<quint16>(bound);
    const auto deadline = std::chrono::steady_clock::now() + kStartTimeout;
    while (!raw->is_running() && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    if (!raw->is_running()) {
        stop();
        return false;
    }
    return true;
}

void LoopbackServer::stop()
{
    if (!d->server)
        return;
    // stop() only takes effect once the server loop runs; repeat it until the loop has ended.
    while (!d->finished) {
        d->server->stop();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    if (d->thread.joinable())
        d->thread.join();
    d->server.reset();
    d->port = 0;
}

bool LoopbackServer::isRunning() const
{
    return d->server && d->server->is_running();
}

quint16 LoopbackServer::port() const
{
    return d->port;
}

QString LoopbackServer::baseUrl() const
{
    return QStringLiteral("127.0.0.1:%1").arg(port());
}

QByteArray LoopbackServer::certificatePem() const
{
    return d->certificate.certificatePem();
}

} // namespace ravelin
