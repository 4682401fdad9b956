#include "demo/server/demoserver.h"

#include "demo/common/selfsignedcertificate.h"
#include "demo/server/demoapi.h"

#include <httplib.h>

#include <sys/socket.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace ravelin {

namespace {

// One request per connection: no idle keep-alive connection holds a server
// thread when the server stops. A silent connection is dropped after this long.
constexpr size_t kRequestsPerConnection = 1;
constexpr time_t kIdleSeconds = 2;
constexpr size_t kMaxBodyBytes = 32 * 1024 * 1024;
constexpr auto kStartTimeout = std::chrono::seconds(10);

// Address reuse for a quick restart, but not SO_REUSEPORT (the library's
// default), which would let a second server listen on the same port.
void listeningSocketOptions(socket_t socket)
{
    int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

DemoRequest toDemoRequest(const httplib::Request &request)
{
    DemoRequest out;
    out.method = QByteArray::fromStdString(request.method);
    out.path = QString::fromStdString(request.path);
    const auto mark = request.target.find('?');
    if (mark != std::string::npos)
        out.query = QUrlQuery(QString::fromStdString(request.target.substr(mark + 1)));
    out.authorization = QByteArray::fromStdString(request.get_header_value("Authorization"));
    out.body = QByteArray::fromStdString(request.body);
    return out;
}

} // namespace

struct DemoServer::Private
{
    // The certificate is checked by TLS peers against their real time, whatever
    // time the deployment runs on; it is therefore dated by the system clock.
    Private(DemoData data, DemoClock clock)
        : certificate(SelfSignedCertificate::create(std::chrono::system_clock::now()))
        , api(std::move(data), std::move(clock))
    {
    }

    SelfSignedCertificate certificate;
    DemoApi api;
    std::unique_ptr<httplib::SSLServer> server;
    std::thread thread;
    std::atomic<bool> finished{true};
    int port = 0;
};

DemoServer::DemoServer(DemoData data, DemoClock clock)
    : d(std::make_unique<Private>(std::move(data), std::move(clock)))
{
}

DemoServer::~DemoServer()
{
    stop();
}

bool DemoServer::start(quint16 port)
{
    if (d->server)
        return false;
    auto server = std::make_unique<httplib::SSLServer>(d->certificate.certificate(), d->certificate.privateKey());
    if (!server->is_valid())
        return false;

    DemoApi *api = &d->api;
    const auto serve = [api](const httplib::Request &request, httplib::Response &response) {
        const DemoResponse answer = api->handle(toDemoRequest(request));
        response.status = answer.status;
        response.set_content(answer.body.constData(), static_cast<size_t>(answer.body.size()),
                             answer.contentType.toStdString());
    };
    server->Get(".*", serve);
    server->Post(".*", serve);
    server->Put(".*", serve);
    server->Patch(".*", serve);
    server->Delete(".*", serve);
    server->set_socket_options(listeningSocketOptions);
    server->set_keep_alive_max_count(kRequestsPerConnection);
    server->set_keep_alive_timeout(kIdleSeconds);
    server->set_read_timeout(kIdleSeconds);
    server->set_payload_max_length(kMaxBodyBytes);

    int bound = 0;
    if (port == 0) {
        bound = server->bind_to_any_port("127.0.0.1");
    } else if (server->bind_to_port("127.0.0.1", port)) {
        bound = port;
    }
    if (bound <= 0)
        return false;

    httplib::SSLServer *raw = server.get();
    d->finished = false;
    d->thread = std::thread([raw, &finished = d->finished] {
        raw->listen_after_bind();
        finished = true;
    });
    const auto deadline = std::chrono::steady_clock::now() + kStartTimeout;
    while (!raw->is_running() && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    d->server = std::move(server);
    d->port = bound;
    if (!raw->is_running()) {
        stop();
        return false;
    }
    return true;
}

void DemoServer::stop()
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

bool DemoServer::isRunning() const
{
    return d->server && d->server->is_running();
}

quint16 DemoServer::port() const
{
    return static_cast<quint16>(d->port);
}

QString DemoServer::baseUrl() const
{
    return QStringLiteral("127.0.0.1:%1").arg(port());
}

QByteArray DemoServer::certificatePem() const
{
    return d->certificate.certificatePem();
}

std::optional<QString> DemoServer::signIn(qint64 userId)
{
    return d->api.signIn(userId);
}

QList<DemoUser> DemoServer::users() const
{
    return d->api.users();
}

} // namespace ravelin
