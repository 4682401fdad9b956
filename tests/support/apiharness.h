#pragma once

#include "api/clock.h"
#include "api/networkmanager.h"
#include "api/networkmanagerdelegate.h"
#include "api/sessionstore.h"
#include "api/settings.h"
#include "api/usersdata.h"
#include "host/ravelinnavvcdelegate.h"
#include "support/testserver.h"

#include <QNetworkAccessManager>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <memory>
#include <optional>

namespace ravelin::test {

// Stands in for the navigation host and the host application: counts expired
// sessions and stores uploaded pictures under "uploads/<file name>".
class FakeHost
    : public NetworkManagerDelegate
    , public RavelinNavVCDelegate
{
public:
    [[nodiscard]] RavelinNavVCDelegate *hostDelegate() const override { return const_cast<FakeHost *>(this); }
    void didSwipe(bool isShown) override { swipes.append(isShown); }
    void sessionExpired() override { ++sessionExpiredCalls; }
    void uploadImage(const QImage &image, const QString &fileName, UploadCompletion completion) override
    {
        uploads.append({image, fileName});
        const bool ok = uploadSucceeds;
        QTimer::singleShot(0, [completion, ok, fileName] { completion(ok, QStringLiteral("uploads/") + fileName); });
    }

    QList<bool> swipes;
    int sessionExpiredCalls = 0;
    QList<std::pair<QImage, QString>> uploads;
    bool uploadSucceeds = true;
};

// A settings and constants answer with one task category, "Pumps".
inline const QByteArray settingsBody
    = R"({"success":true,"data":{"itemStatus":[],"taskStatus":[],"taskCategory":[{"id":1,"name":"Pumps"}]}})";

// What a call of the network manager completed with: "success", or the error's
// kind ("invalidStatusCode(500)", "apiRouteError", ...).
[[nodiscard]] inline QString outcome(const ManagerErrors &error)
{
    switch (error.kind()) {
    case ManagerErrors::Kind::invalidStatusCode: return QStringLiteral("invalidStatusCode(%1)").arg(error.statusCode());
    case ManagerErrors::Kind::invalidResponse: return QStringLiteral("invalidResponse");
    case ManagerErrors::Kind::invalidParsing: return QStringLiteral("invalidParsing");
    case ManagerErrors::Kind::invalidToken: return QStringLiteral("invalidToken");
    case ManagerErrors::Kind::sessionExpired: return QStringLiteral("sessionExpired");
    case ManagerErrors::Kind::apiRouteError: return QStringLiteral("apiRouteError");
    }
    return {};
}

// A picture download passes a transport error on as it is.
[[nodiscard]] inline QString outcome(const DownloadError &error)
{
    return error.managerError() ? outcome(*error.managerError()) : QStringLiteral("transport error");
}

template<class T, class E>
[[nodiscard]] QString outcome(const Result<T, E> &result)
{
    return result.isSuccess() ? QStringLiteral("success") : outcome(result.error());
}

// Starts a call whose completion reports success first, and waits for that
// report: what it said, or nothing when it did not come in time.
template<class Start>
std::optional<bool> reported(Start &&start, int timeoutMs = 10000)
{
    std::optional<bool> ok;
    start([&ok](bool success, auto &&...) { ok = success; });
    return QTest::qWaitFor([&ok] { return ok.has_value(); }, timeoutMs) ? ok : std::nullopt;
}

// A network manager wired to a fresh loopback test server with a fresh token,
// a fixed clock and a throw-away settings store; `users` has worker 7 signed in.
// Given task categories, the session's settings have them (as received) until
// the harness goes; it leaves the default settings behind.
class ApiHarness
{
public:
    explicit ApiHarness(QList<TaskCategoryDefinition> categories = {},
                        TimePoint now = TimePoint(std::chrono::milliseconds(1795169730123)))
        : now(now)
        , settings(dir.filePath(QStringLiteral("session.ini")), QSettings::IniFormat)
        , store(&settings)
        , manager(&network, &store, fixedClock(now))
    {
        settings.clear();
        store.store(APIData{server.baseUrl(), QStringLiteral("tok"), toDateTime(now - std::chrono::seconds(60))});
        manager.setDelegate(&host);
        users.currentUser.id = 7;
        if (!categories.isEmpty())
            Settings::setCurrent(Settings::fromReceived(Settings{{}, {}, std::move(categories)}));
    }
    ~ApiHarness() { Settings::setCurrent(Settings::defaults()); }
    ApiHarness(const ApiHarness &) = delete;
    ApiHarness &operator=(const ApiHarness &) = delete;

    // Sends the request and waits for its answer. No answer in time fails the
    // test, and stands as sessionExpired, which the manager never raises.
    template<class T = SettingsAndConstantsResponse>
    [[nodiscard]] Result<T> answer(const Router &route = Router::getSettingsAndConstants(), int timeoutMs = 30000)
    {
        auto result = std::make_shared<std::optional<Result<T>>>();
        manager.request<T>(route, ApiQueue::shared(), &network, [result](const Result<T> &r) { *result = r; });
        [&] { QTRY_VERIFY_WITH_TIMEOUT(result->has_value(), timeoutMs); }();
        return result->value_or(Result<T>::failure(ManagerErrors(ManagerErrors::Kind::sessionExpired)));
    }

    struct Completion
    {
        QString outcome;
        QThread *thread = nullptr;
    };
    // Asks for the settings and constants, or downloads the picture "p/a.png",
    // and waits for the first completion; false when none came in time. Every
    // completion is kept in `completions`.
    [[nodiscard]] bool call(bool picture = false, int timeoutMs = 30000)
    {
        const auto record = [this](const auto &result) {
            completions.append({outcome(result), QThread::currentThread()});
        };
        const qsizetype before = completions.size();
        if (picture)
            manager.downloadImage(QStringLiteral("p/a.png"), false, &network, record);
        else
            manager.request<SettingsAndConstantsResponse>(Router::getSettingsAndConstants(), ApiQueue::shared(),
                                                          &network, record);
        return QTest::qWaitFor([&] { return completions.size() > before; }, timeoutMs);
    }

    TimePoint now;
    TestServer server;
    QTemporaryDir dir;
    QSettings settings;
    SessionStore store;
    QNetworkAccessManager network;
    FakeHost host;
    NetworkManager manager;
    UsersData users;
    QList<Completion> completions;
};

} // namespace ravelin::test
