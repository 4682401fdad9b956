#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>

#include <utility>

class QSslServer;
class QSslSocket;

namespace ravelin::test {

// An HTTPS server on 127.0.0.1 that misbehaves on purpose, for the network
// manager's fault tests. Unlike TestServer it runs on the thread that creates it
// (the test's main thread, driven by its event loop), so that it can stall, drip
// or cut a connection at any byte. Each path answers with its scripted answer;
// an unscripted path gets 404 with an empty body. One request per connection.
class FaultServer : public QObject
{
    Q_OBJECT

public:
    enum class Behaviour {
        answer, // the headers and the whole body, then the connection closes
        closeMidBody, // the headers announce the whole body; half of it is sent, then the connection closes
        resetBeforeHeaders, // the request is read, then the connection is reset
        stallBeforeHeaders, // the request is read, then nothing is sent
        stallMidBody, // the headers and half of the body, then nothing
        drip, // the headers and the body one byte a millisecond
    };

    struct Script
    {
        Behaviour behaviour = Behaviour::answer;
        int status = 200;
        QByteArray body;
        QByteArray contentType = "application/json";
        QList<std::pair<QByteArray, QByteArray>> headers; // extra headers, e.g. Location
    };

    explicit FaultServer(QObject *parent = nullptr);
    ~FaultServer() override;

    // Listens on an ephemeral port with a certificate made for the server.
    [[nodiscard]] bool listen();
    // "127.0.0.1:<port>", no scheme.
    [[nodiscard]] QString baseUrl() const;

    void script(const QString &path, Script script);

private:
    void accept();
    void readRequest(QSslSocket *socket);
    void respond(QSslSocket *socket, const QString &path);
    void drip(QSslSocket *socket, QByteArray bytes);

    QSslServer *m_server = nullptr;
    QHash<QString, Script> m_scripts;
    QHash<QSslSocket *, QByteArray> m_received;
};

} // namespace ravelin::test
