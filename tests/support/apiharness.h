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

    TimePoint now;
    TestServer server;
    QTemporaryDir dir;
    QSettings settings;
    SessionStore store;
    QNetworkAccessManager network;
    FakeHost host;
    NetworkManager manager;
    UsersData users;
};

} // namespace ravelin::test
