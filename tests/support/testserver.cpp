#include "support/testserver.h"

#include "api/fatalerror.h"
#include "demo/common/loopbackserver.h"

#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QSslCertificate>
#include <QSslError>
#include <QUrlQuery>

#include <httplib.h>

#include <algorithm>
#include <map>
#include <mutex>

namespace ravelin::test {

namespace {

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

} // namespace

QByteArray RecordedRequest::header(const QByteArray &name) const
{
    const auto found = std::ranges::find_if(
        headers, [&name](const auto &header) { return header.first.compare(name, Qt::CaseInsensitive) == 0; });
    return found == headers.end() ? QByteArray() : found->second;
}

struct TestServer::Private
{
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
        if (!answer.contentEncoding.isEmpty())
            response.set_header("Content-Encoding", answer.contentEncoding.toStdString());
    }

    // Called with the mutex held.
    [[nodiscard]] Handler find(const QByteArray &method, const QString &path) const
    {
        const auto exact = exactRoutes.find({method, path});
        if (exact != exactRoutes.end())
            return exact->second;
        Handler longest; // of the matching prefixes, the longest sorts last
        for (const auto &[route, handler] : prefixRoutes) {
            if (route.first == method && path.startsWith(route.second))
                longest = handler;
        }
        return longest;
    }

    mutable std::mutex mutex;
    std::map<std::pair<QByteArray, QString>, Handler> exactRoutes;
    std::map<std::pair<QByteArray, QString>, Handler> prefixRoutes;
    QList<RecordedRequest> received;
    std::unique_ptr<LoopbackServer> server; // last: it stops serving before the routes go
};

TestServer::TestServer()
    : d(std::make_unique<Private>())
{
    d->server = std::make_unique<LoopbackServer>(
        SelfSignedCertificate::create(),
        [this](const httplib::Request &request, httplib::Response &response) { d->serve(request, response); });
    if (!d->server->start())
        fatalError(QStringLiteral("The test server could not listen on 127.0.0.1"), "TestServer");
}

TestServer::~TestServer() = default;

QString TestServer::baseUrl() const
{
    return d->server->baseUrl();
}

QByteArray TestServer::certificatePem() const
{
    return d->server->certificatePem();
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
    d->prefixRoutes[{method, prefix}] = std::move(handler);
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
    std::ranges::copy_if(d->received, std::back_inserter(matching),
                         [&path](const RecordedRequest &request) { return request.path == path; });
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
