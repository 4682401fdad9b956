#include "support/testserver.h"

#include "api/fatalerror.h"
#include "demo/common/selfsignedcertificate.h"

#include <QUrlQuery>

#include <httplib.h>

#include <sys/socket.h>

#include <chrono>
#include <map>
#include <mutex>
#include <thread>

namespace ravelin::test {

namespace {

// Every connection is closed after one answer, so that no idle keep-alive
// connection holds a server thread when the server stops; a connection that
// opens but stays silent is dropped after this long, which bounds the stop.
constexpr size_t kRequestsPerConnection = 1;
constexpr time_t kKeepAliveSeconds = 1;
constexpr auto kStartTimeout = std::chrono::seconds(10);

// Address reuse, but not SO_REUSEPORT (the library's default), so that no
// two servers ever share a port.
void listeningSocketOptions(socket_t socket)
{
    int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

RecordedRequest record(const httplib::Request &request)
{
    RecordedRequest recorded;
    recorded.method = QByteArray::fromStdString(request.method);
    recorded.path = QString::fromStdString(request.path);
    const auto mark = request.target.find('?');
    if (mark != std::string::npos) {
        const QUrlQuery query(QString::fromStdString(request.target.substr(mark + 1)));
        for (const auto &[name, value] : query.queryItems(QUrl::FullyDecoded))
            recorded.query.append({name, value});
    }
    for (const auto &[name, value] : request.headers)
        recorded.headers.append({QByteArray::fromStdString(name), QByteArray::fromStdString(value)});
    recorded.body = QByteArray::fromStdString(request.body);
    return recorded;
}

struct PrefixRoute
{
    QByteArray method;
    QString prefix;
    TestServer::Handler handler;
};

} // namespace

QByteArray RecordedRequest::header(const QByteArray &name) const
{
    for (const auto &[key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0)
            return value;
    }
    return {};
}

bool RecordedRequest::hasHeader(const QByteArray &name) const
{
    for (const auto &entry : headers) {
        if (entry.first.compare(name, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

std::optional<QString> RecordedRequest::queryValue(const QString &name) const
{
    for (const auto &[key, value] : query) {
        if (key == name)
            return value;
    }
    return std::nullopt;
}

struct TestServer::Private
{
    Private()
        : certificate(SelfSignedCertificate::create())
        , server(certificate.certificate(), certificate.privateKey())
    {
    }

    void serve(const httplib::Request &request, httplib::Response &response)
    {
        RecordedRequest recorded = record(request);
        Handler handler;
        {
            std::lock_guard lock(mutex);
            received.append(recorded);
            handler = find(recorded.method, recorded.path);
        }
        if (!handler) {
            response.status = 404;
            return;
        }
        const CannedResponse answer = handler(recorded);
        response.status = answer.status;
        response.set_content(answer.body.constData(), static_cast<size_t>(answer.body.size()),
                             answer.contentType.toStdString());
    }

    // Called with the mutex held.
    [[nodiscard]] Handler find(const QByteArray &method, const QString &path) const
    {
        const auto exact = exactRoutes.find({method, path});
        if (exact != exactRoutes.end())
            return exact->second;
        const PrefixRoute *best = nullptr;
        for (const PrefixRoute &route : prefixRoutes) {
            if (route.method == method && path.startsWith(route.prefix)
                && (!best || route.prefix.size() > best->prefix.size()))
                best = &route;
        }
        return best ? best->handler : Handler();
    }

    SelfSignedCertificate certificate;
    httplib::SSLServer server;
    std::thread thread;
    int port = -1;

    mutable std::mutex mutex;
    std::map<std::pair<QByteArray, QString>, Handler> exactRoutes;
    QList<PrefixRoute> prefixRoutes;
    QList<RecordedRequest> received;
};

TestServer::TestServer()
    : d(std::make_unique<Private>())
{
    if (!d->server.is_valid())
        fatalError(QStringLiteral("The test server could not set up TLS"), "TestServer");

    const auto serve = [this](const httplib::Request &request, httplib::Response &response) {
        d->serve(request, response);
    };
    d->server.Get(".*", serve);
    d->server.Post(".*", serve);
    d->server.Put(".*", serve);
    d->server.Patch(".*", serve);
    d->server.Delete(".*", serve);
    d->server.Options(".*", serve);
    d->server.set_socket_options(listeningSocketOptions);
    d->server.set_keep_alive_max_count(kRequestsPerConnection);
    d->server.set_keep_alive_timeout(kKeepAliveSeconds);

    d->port = d->server.bind_to_any_port("127.0.0.1");
    if (d->port <= 0)
        fatalError(QStringLiteral("The test server could not bind to 127.0.0.1"), "TestServer");
    d->thread = std::thread([this] { d->server.listen_after_bind(); });

    const auto deadline = std::chrono::steady_clock::now() + kStartTimeout;
    while (!d->server.is_running()) {
        if (std::chrono::steady_clock::now() > deadline) {
            fatalError(QStringLiteral("The test server did not start listening"), "TestServer");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

TestServer::~TestServer()
{
    d->server.stop();
    if (d->thread.joinable())
        d->thread.join();
}

quint16 TestServer::port() const
{
    return static_cast<quint16>(d->port);
}

QString TestServer::baseUrl() const
{
    return QStringLiteral("127.0.0.1:%1").arg(port());
}

void TestServer::on(const QByteArray &method, const QString &path, CannedResponse response)
{
    on(method, path, Handler([response = std::move(response)](const RecordedRequest &) { return response; }));
}

void TestServer::on(const QByteArray &method, const QString &path, Handler handler)
{
    std::lock_guard lock(d->mutex);
    d->exactRoutes[{method, path}] = std::move(handler);
}

void TestServer::onPrefix(const QByteArray &method, const QString &prefix, Handler handler)
{
    std::lock_guard lock(d->mutex);
    for (PrefixRoute &route : d->prefixRoutes) {
        if (route.method == method && route.prefix == prefix) {
            route.handler = std::move(handler);
            return;
        }
    }
    d->prefixRoutes.append({method, prefix, std::move(handler)});
}

QList<RecordedRequest> TestServer::requests() const
{
    std::lock_guard lock(d->mutex);
    return d->received;
}

QList<RecordedRequest> TestServer::requests(const QString &path) const
{
    std::lock_guard lock(d->mutex);
    QList<RecordedRequest> matching;
    for (const RecordedRequest &request : d->received) {
        if (request.path == path)
            matching.append(request);
    }
    return matching;
}

int TestServer::requestCount() const
{
    std::lock_guard lock(d->mutex);
    return static_cast<int>(d->received.size());
}

void TestServer::clearRequests()
{
    std::lock_guard lock(d->mutex);
    d->received.clear();
}

} // namespace ravelin::test
