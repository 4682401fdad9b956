#include "demo/server/demoserver.h"

#include "demo/common/loopbackserver.h"
#include "demo/server/demoapi.h"

#include <httplib.h>

#include <chrono>

namespace ravelin {

namespace {

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

void serve(DemoApi &api, const httplib::Request &request, httplib::Response &response)
{
    const DemoResponse answer = api.handle(toDemoRequest(request));
    response.status = answer.status;
    response.set_content(answer.body.constData(), static_cast<size_t>(answer.body.size()),
                         answer.contentType.toStdString());
}

} // namespace

struct DemoServer::Private
{
    // The certificate is checked by TLS peers against their real time, whatever
    // time the deployment runs on; it is therefore dated by the system clock.
    Private(DemoData data, DemoClock clock)
        : api(std::move(data), std::move(clock))
        , server(
              SelfSignedCertificate::create(std::chrono::system_clock::now()),
              [this](const httplib::Request &request, httplib::Response &response) { serve(api, request, response); })
    { }

    DemoApi api;
    LoopbackServer server; // last: it stops serving before the API goes
};

DemoServer::DemoServer(DemoData data, DemoClock clock)
    : d(std::make_unique<Private>(std::move(data), std::move(clock)))
{ }

DemoServer::~DemoServer() = default;

bool DemoServer::start(quint16 port)
{
    return d->server.start(port);
}

void DemoServer::stop()
{
    d->server.stop();
}

bool DemoServer::isRunning() const
{
    return d->server.isRunning();
}

quint16 DemoServer::port() const
{
    return d->server.port();
}

QString DemoServer::baseUrl() const
{
    return d->server.baseUrl();
}

QByteArray DemoServer::certificatePem() const
{
    return d->server.certificatePem();
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
