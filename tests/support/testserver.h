#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QtGlobal>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace ravelin::test {

// One request as the test server received it.
struct RecordedRequest
{
    QByteArray method; // "GET", "PUT", ...
    QString path; // "/api/tasks/assigned-user/7" (without query)
    QList<std::pair<QString, QString>> query; // decoded query items, in the order received
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;

    // Case-insensitive; empty if absent.
    [[nodiscard]] QByteArray header(const QByteArray &name) const;
};

struct CannedResponse
{
    int status = 200;
    QByteArray body;
    QByteArray contentType = "application/json";
    // Sent as the Content-Encoding with the body as it is (already encoded).
    // The server compresses JSON and text answers itself for a client that
    // accepts gzip, so a hand-encoded body goes with another type
    // ("application/octet-stream").
    QByteArray contentEncoding = {};
};

// One HTTPS exchange with a loopback server (127.0.0.1:<port>), trusting exactly
// its certificate: the status (0 when no answer came in time), body and type.
struct Exchange
{
    int status = 0;
    QByteArray body;
    QByteArray contentType;
};
Exchange exchange(const QString &baseUrl, const QByteArray &certificatePem, const QByteArray &method,
                  const QString &pathAndQuery, const QByteArray &body = {},
                  const QList<std::pair<QByteArray, QByteArray>> &headers = {});

// A real HTTPS server on 127.0.0.1 with an ephemeral port and a certificate
// made for the test, serving from a background thread between construction and
// destruction. Every request is recorded; answers come from registered canned
// responses or handlers, and anything unmatched gets 404 with an empty body.
// Handlers run on the server's threads.
class TestServer
{
public:
    using Handler = std::function<CannedResponse(const RecordedRequest &)>;

    TestServer();
    ~TestServer();
    TestServer(const TestServer &) = delete;
    TestServer &operator=(const TestServer &) = delete;

    // "127.0.0.1:<port>", no scheme.
    [[nodiscard]] QString baseUrl() const;
    // The server's certificate (PEM), made for this server.
    [[nodiscard]] QByteArray certificatePem() const;

    // Answer requests whose method and path (without query) match exactly; a
    // later registration for the same method and path replaces the earlier one.
    void on(const QByteArray &method, const QString &path, CannedResponse response);
    void on(const QByteArray &method, const QString &path, Handler handler);
    // Answer every path that starts with a prefix (checked after exact matches;
    // the longest matching prefix wins).
    void onPrefix(const QByteArray &method, const QString &prefix, Handler handler);

    // Every request received, in order (a copy taken under the lock).
    [[nodiscard]] QList<RecordedRequest> requests() const;
    [[nodiscard]] QList<RecordedRequest> requests(const QString &path) const;
    [[nodiscard]] int requestCount() const;
    [[nodiscard]] int requestCount(const QString &path) const { return int(requests(path).size()); }
    // The last body sent on a path as a JSON object; empty when none was.
    [[nodiscard]] QJsonObject lastBody(const QString &path) const;
    void clearRequests();

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ravelin::test
