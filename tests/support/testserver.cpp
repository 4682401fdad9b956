#include "support/testserver.h"

#include "api/fatalerror.h"
#include "demo/common/selfsignedcertificate.h"
#include "support/gzipstreams.h"

#include <QHash>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QSignalSpy>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslError>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QThread>
#include <QThreadPool>
#include <QTimer>
#include <QUrlQuery>

#include <sys/socket.h>

#include <map>
#include <mutex>
#include <optional>

namespace ravelin::test {

namespace {

constexpr qsizetype maxRequestBytes = 64 * 1024 * 1024;

// The request once `bytes` hold all of it: the head up to the first blank line,
// then a body of the announced length.
std::optional<RecordedRequest> parse(const QByteArray &bytes)
{
    const qsizetype end = bytes.indexOf("\r\n\r\n");
    if (end < 0)
        return std::nullopt;
    RecordedRequest request;
    const QList<QByteArray> lines = bytes.left(end).split('\n');
    qsizetype length = 0;
    for (const QByteArray &line : lines.mid(1)) {
        const qsizetype colon = line.indexOf(':');
        if (colon <= 0)
            continue;
        request.headers.append({line.left(colon).trimmed(), line.mid(colon + 1).trimmed()});
        if (request.headers.last().first.compare("content-length", Qt::CaseInsensitive) == 0)
            length = request.headers.last().second.toLongLong();
    }
    if (bytes.size() < end + 4 + length)
        return std::nullopt;
    const QList<QByteArray> requestLine = lines.value(0).trimmed().split(' ');
    const QByteArray target = requestLine.value(1);
    const qsizetype mark = target.indexOf('?');
    request.method = requestLine.value(0);
    request.path = QUrl::fromPercentEncoding(mark < 0 ? target : target.left(mark));
    if (mark >= 0) {
        for (const auto &[name, value] :
             QUrlQuery(QString::fromUtf8(target.mid(mark + 1))).queryItems(QUrl::FullyDecoded))
            request.query.append({name, value});
    }
    request.body = bytes.mid(end + 4, length);
    return request;
}

QByteArray head(const CannedResponse &answer, qsizetype length, const QByteArray &encoding)
{
    QByteArray out = "HTTP/1.1 " + QByteArray::number(answer.status)
        + " Answer\r\nContent-Length: " + QByteArray::number(length) + "\r\nConnection: close\r\n";
    if (!answer.contentType.isEmpty())
        out += "Content-Type: " + answer.contentType + "\r\n";
    if (!encoding.isEmpty())
        out += "Content-Encoding: " + encoding + "\r\n";
    for (const auto &[name, value] : answer.headers)
        out += name + ": " + value + "\r\n";
    return out + "\r\n";
}

// Closes the connection with a TCP reset rather than an orderly shutdown.
void reset(QSslSocket *socket)
{
    const linger hard{1, 0};
    setsockopt(int(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
    socket->abort();
}

void drip(QSslSocket *socket, QByteArray bytes)
{
    auto *timer = new QTimer(socket);
    timer->setInterval(1);
    QObject::connect(timer, &QTimer::timeout, socket,
                     [socket, timer, bytes = std::move(bytes), sent = qsizetype(0)]() mutable {
                         if (sent < bytes.size()) {
                             socket->write(bytes.constData() + sent++, 1);
                             return;
                         }
                         timer->stop();
                         socket->disconnectFromHost();
                     });
    timer->start();
}

void respond(QSslSocket *socket, const RecordedRequest &request, const CannedResponse &answer)
{
    using Delivery = CannedResponse::Delivery;
    QByteArray body = answer.body;
    QByteArray encoding = answer.contentEncoding;
    if (answer.delivery == Delivery::whole && encoding.isEmpty() && !body.isEmpty()
        && (answer.contentType.startsWith("text/") || answer.contentType.contains("json"))
        && request.header("Accept-Encoding").contains("gzip")) {
        body = gzip(body);
        encoding = "gzip";
    }
    const QByteArray whole = head(answer, body.size(), encoding) + body;
    const QByteArray half = head(answer, body.size(), encoding) + body.left(body.size() / 2);
    switch (answer.delivery) {
    case Delivery::whole:
        socket->write(whole);
        socket->disconnectFromHost();
        break;
    case Delivery::closeMidBody:
        socket->write(half);
        socket->disconnectFromHost();
        break;
    case Delivery::resetBeforeHeaders: reset(socket); break;
    case Delivery::stallBeforeHeaders: break;
    case Delivery::stallMidBody: socket->write(half); break;
    case Delivery::drip: drip(socket, whole); break;
    }
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

struct TestServer::Private
{
    // On the server's thread from here on.
    void listen()
    {
        server = new QSslServer(context);
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.setLocalCertificate(QSslCertificate(certificate.certificatePem()));
        configuration.setPrivateKey(QSslKey(certificate.privateKeyPem(), QSsl::Ec));
        configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
        server->setSslConfiguration(configuration);
        QObject::connect(server, &QSslServer::pendingConnectionAvailable, context, [this] { accept(); });
        if (server->listen(QHostAddress::LocalHost, 0))
            port = server->serverPort();
    }

    void accept()
    {
        while (server->hasPendingConnections()) {
            auto *socket = qobject_cast<QSslSocket *>(server->nextPendingConnection());
            if (!socket)
                continue;
            reading.insert(socket, {});
            QObject::connect(socket, &QSslSocket::readyRead, context, [this, socket] { read(socket); });
            QObject::connect(socket, &QSslSocket::disconnected, context, [this, socket] {
                reading.remove(socket);
                socket->deleteLater();
            });
            if (socket->bytesAvailable() > 0)
                read(socket);
        }
    }

    void read(QSslSocket *socket)
    {
        const auto found = reading.find(socket);
        if (found == reading.end())
            return;
        *found += socket->readAll();
        const std::optional<RecordedRequest> request = parse(*found);
        if (!request) {
            if (found->size() > maxRequestBytes)
                socket->abort();
            return;
        }
        reading.erase(found);
        Handler handler;
        {
            std::lock_guard lock(mutex);
            received.append(*request);
            handler = find(request->method, request->path);
        }
        if (!handler)
            return respond(socket, *request, CannedResponse{404, {}, {}});
        handlers.start([this, target = QPointer(socket), request = *request, handler] {
            const CannedResponse answer = handler(request);
            QMetaObject::invokeMethod(context, [target, request, answer] {
                if (target)
                    respond(target, request, answer);
            });
        });
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

    mutable std::mutex mutex;
    std::map<std::pair<QByteArray, QString>, Handler> exactRoutes;
    QList<PrefixRoute> prefixRoutes;
    QList<RecordedRequest> received;

    SelfSignedCertificate certificate = SelfSignedCertificate::create();
    QThread thread;
    QThreadPool handlers;
    QObject *context = nullptr; // on the server's thread: the server, its sockets and timers
    QSslServer *server = nullptr;
    QHash<QSslSocket *, QByteArray> reading; // connections whose request is not in yet
    quint16 port = 0;
};

TestServer::TestServer()
    : d(std::make_unique<Private>())
{
    d->handlers.setMaxThreadCount(32);
    d->thread.start();
    d->context = new QObject;
    d->context->moveToThread(&d->thread);
    QMetaObject::invokeMethod(
        d->context, [this] { d->listen(); }, Qt::BlockingQueuedConnection);
    if (d->port == 0)
        fatalError(QStringLiteral("The test server could not listen on 127.0.0.1"), "TestServer");
}

TestServer::~TestServer()
{
    QMetaObject::invokeMethod(
        d->context,
        [this] {
            d->server->close();
            for (QSslSocket *socket : d->context->findChildren<QSslSocket *>())
                socket->abort();
        },
        Qt::BlockingQueuedConnection);
    d->handlers.waitForDone();
    QMetaObject::invokeMethod(
        d->context, [this] { delete d->context; }, Qt::BlockingQueuedConnection);
    d->thread.quit();
    d->thread.wait();
}

quint16 TestServer::port() const
{
    return d->port;
}

QString TestServer::baseUrl() const
{
    return QStringLiteral("127.0.0.1:%1").arg(d->port);
}

QByteArray TestServer::certificatePem() const
{
    return d->certificate.certificatePem();
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
    QList<RecordedRequest> matching;
    for (const RecordedRequest &request : requests()) {
        if (request.path == path)
            matching.append(request);
    }
    return matching;
}

QJsonObject TestServer::lastBody(const QString &path) const
{
    const QList<RecordedRequest> sent = requests(path);
    return sent.isEmpty() ? QJsonObject() : QJsonDocument::fromJson(sent.last().body).object();
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

Exchange exchange(const QString &baseUrl, const QByteArray &certificatePem, const QByteArray &method,
                  const QString &pathAndQuery, const QByteArray &body,
                  const QList<std::pair<QByteArray, QByteArray>> &headers)
{
    QNetworkRequest request(QUrl(QStringLiteral("https://") + baseUrl + pathAndQuery));
    for (const auto &[name, value] : headers)
        request.setRawHeader(name, value);
    QNetworkAccessManager network;
    std::unique_ptr<QNetworkReply> reply(network.sendCustomRequest(request, method, body));
    reply->ignoreSslErrors({QSslError(QSslError::SelfSignedCertificate, QSslCertificate(certificatePem))});
    QSignalSpy finished(reply.get(), &QNetworkReply::finished);
    if (!reply->isFinished())
        finished.wait(15000);
    return {reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), reply->readAll(),
            reply->header(QNetworkRequest::ContentTypeHeader).toByteArray()};
}

} // namespace ravelin::test
