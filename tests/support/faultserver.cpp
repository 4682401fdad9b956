#include "support/faultserver.h"

#include "demo/common/selfsignedcertificate.h"

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTimer>

#include <sys/socket.h>

namespace ravelin::test {

namespace {

constexpr qsizetype maxRequestBytes = 1024 * 1024;

QByteArray head(const FaultServer::Script &script)
{
    QByteArray out = "HTTP/1.1 " + QByteArray::number(script.status) + " Scripted\r\n";
    out += "Content-Type: " + script.contentType + "\r\n";
    out += "Content-Length: " + QByteArray::number(script.body.size()) + "\r\n";
    out += "Connection: close\r\n";
    for (const auto &[name, value] : script.headers)
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

} // namespace

FaultServer::FaultServer(QObject *parent)
    : QObject(parent)
    , m_server(new QSslServer(this))
{
    connect(m_server, &QSslServer::pendingConnectionAvailable, this, &FaultServer::accept);
}

FaultServer::~FaultServer()
{
    m_server->close();
    const QList<QSslSocket *> sockets = m_received.keys();
    for (QSslSocket *socket : sockets)
        socket->abort();
}

bool FaultServer::listen()
{
    const SelfSignedCertificate certificate = SelfSignedCertificate::create();
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(QSslCertificate(certificate.certificatePem()));
    configuration.setPrivateKey(QSslKey(certificate.privateKeyPem(), QSsl::Ec));
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    m_server->setSslConfiguration(configuration);
    return m_server->listen(QHostAddress::LocalHost, 0);
}

QString FaultServer::baseUrl() const
{
    return QStringLiteral("127.0.0.1:%1").arg(m_server->serverPort());
}

void FaultServer::script(const QString &path, Script script)
{
    m_scripts.insert(path, std::move(script));
}

void FaultServer::accept()
{
    while (m_server->hasPendingConnections()) {
        auto *socket = qobject_cast<QSslSocket *>(m_server->nextPendingConnection());
        if (!socket)
            continue;
        m_received.insert(socket, {});
        connect(socket, &QSslSocket::readyRead, this, [this, socket] { readRequest(socket); });
        connect(socket, &QSslSocket::disconnected, this, [this, socket] {
            m_received.remove(socket);
            socket->deleteLater();
        });
        if (socket->bytesAvailable() > 0)
            readRequest(socket);
    }
}

void FaultServer::readRequest(QSslSocket *socket)
{
    auto found = m_received.find(socket);
    if (found == m_received.end())
        return;
    QByteArray &bytes = *found;
    bytes += socket->readAll();
    const qsizetype end = bytes.indexOf("\r\n\r\n");
    if (end < 0) {
        if (bytes.size() > maxRequestBytes)
            socket->abort();
        return;
    }
    qsizetype contentLength = 0;
    const QList<QByteArray> lines = bytes.left(end).split('\n');
    for (const QByteArray &line : lines) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && line.left(colon).trimmed().compare("content-length", Qt::CaseInsensitive) == 0)
            contentLength = line.mid(colon + 1).trimmed().toLongLong();
    }
    if (bytes.size() < end + 4 + contentLength)
        return;

    const QList<QByteArray> requestLine = lines.value(0).trimmed().split(' ');
    const QByteArray target = requestLine.value(1);
    const qsizetype query = target.indexOf('?');
    bytes.clear();
    respond(socket, QString::fromUtf8(query < 0 ? target : target.left(query)));
}

void FaultServer::respond(QSslSocket *socket, const QString &path)
{
    const Script script = m_scripts.value(path, Script{Behaviour::answer, 404, {}, "text/plain", {}});
    const QByteArray answer = head(script) + script.body;
    const QByteArray halfway = head(script) + script.body.left(script.body.size() / 2);
    switch (script.behaviour) {
    case Behaviour::answer:
        socket->write(answer);
        socket->disconnectFromHost();
        break;
    case Behaviour::closeMidBody:
        socket->write(halfway);
        socket->disconnectFromHost();
        break;
    case Behaviour::resetBeforeHeaders: reset(socket); break;
    case Behaviour::stallBeforeHeaders: break;
    case Behaviour::stallMidBody: socket->write(halfway); break;
    case Behaviour::drip: drip(socket, answer); break;
    }
}

void FaultServer::drip(QSslSocket *socket, QByteArray bytes)
{
    auto *timer = new QTimer(socket);
    timer->setInterval(1);
    connect(timer, &QTimer::timeout, socket, [socket, timer, bytes = std::move(bytes), sent = qsizetype(0)]() mutable {
        if (sent < bytes.size()) {
            socket->write(bytes.constData() + sent, 1);
            ++sent;
            return;
        }
        timer->stop();
        socket->disconnectFromHost();
    });
    timer->start();
}

} // namespace ravelin::test
