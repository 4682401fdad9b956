#pragma once

#include "api/clock.h"
#include "api/trustpolicy.h"
#include "demo/app/hostsetup.h"
#include "host/ravelinnavvcdelegate.h"

#include <QDateTime>
#include <QMap>
#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

class QSettings;
class QStackedWidget;
class QVBoxLayout;

namespace ravelin {

class CameraFrameSource;
class HostApiClient;
class HostBar;
class HostPanel;
class NotificationCenter;
class ImagePicker;
class OfflineStore;
class RavelinNavVC;
class ScenePicker;
class SignInScreen;
class SwitchableNetworkAccess;
class TaskEventSheet;

// The demo host application's window, phone sized: its sign-in screen, then the
// task client (a RavelinNavVC) over the host's bar, with the host's side panel
// and task event sheet on top. It is the library's RavelinNavVCDelegate: it
// shows its panel when asked, signs in again when the session expires and
// uploads the library's pictures to the deployment. Its "Offline" switch (on
// the host bar and the sign-in screen) cuts the host's network; back online it
// has the library send what waited, as a phone's reachability would.
class DemoHostWindow
    : public QWidget
    , public RavelinNavVCDelegate
{
    Q_OBJECT

public:
    static constexpr QSize phoneSize{390, 844};

    // What the window and the library run on.
    struct Environment
    {
        QSettings *userDefaults = nullptr;
        // The host's and the library's requests, all of them.
        SwitchableNetworkAccess *network = nullptr;
        NotificationCenter *notifications = nullptr;
        Clock clock = systemClock();
        // How the library picks pictures; when unset, the host's drawn pictures
        // (a phone would offer its photos, not a desktop file dialog).
        ImagePicker *imagePicker = nullptr;
        // What the library's QR scanner sees; the demo camera when unset.
        std::function<std::unique_ptr<CameraFrameSource>()> cameraFrameSource = {};
        // Which server certificates the library accepts; any when unset.
        TrustPolicy trustPolicy = {};
        // Where the library keeps answers and unsent results; none: online only.
        // Not owned; it outlives the window.
        OfflineStore *offlineStore = nullptr;
    };

    // The signed-in session as the host has it.
    struct Session
    {
        qint64 userId = 0;
        QString userName;
        QString token;
        QDateTime tokenTimeStamp;
        QMap<qint64, QStringList> assetsList;
    };

    DemoHostWindow(HostSetup setup, Environment environment, QWidget *parent = nullptr);
    ~DemoHostWindow() override;

    [[nodiscard]] const HostSetup &setup() const { return m_setup; }

    // Signs the worker in (with a preset session: starts it at once). The answer
    // comes as sessionStarted() or signInFailed().
    void signIn(qint64 workerId);
    // Ends the session from the host's side and shows the sign-in screen.
    void signOut();

    [[nodiscard]] bool isSignedIn() const { return m_session.has_value(); }
    [[nodiscard]] const std::optional<Session> &session() const { return m_session; }
    [[nodiscard]] RavelinNavVC *navVC() const;

    [[nodiscard]] SignInScreen *signInScreen() const { return m_signInScreen; }
    [[nodiscard]] HostPanel *hostPanel() const { return m_panel; }
    [[nodiscard]] HostBar *hostBar() const { return m_bar; }
    [[nodiscard]] TaskEventSheet *taskEventSheet() const { return m_sheet; }
    [[nodiscard]] HostApiClient *apiClient() const { return m_client; }
    [[nodiscard]] SwitchableNetworkAccess *network() const { return m_environment.network; }

    // The host's menu: the tasks it can post events about (the signed-in
    // worker's first), the sheet, the posting itself and the emergency switch.
    [[nodiscard]] QList<HostSetup::TaskChoice> taskChoices() const;
    void openTaskEventSheet();
    void postTaskEvent(qint64 taskId, const QString &taskName, const QString &kind);
    void setEmergency(bool inForce);
    void closeHostPanel();

    // The host's network off (every request fails at once) or on again.
    [[nodiscard]] bool isOffline() const;
    void setOffline(bool offline);

    // RavelinNavVCDelegate
    // The flag tells whether the library's panel button was on: on hides the
    // host panel, off shows it (a swipe to the left hides it, to the right shows it).
    void didSwipe(bool isShown) override;
    void sessionExpired() override;
    void uploadImage(const QImage &image, const QString &fileName, UploadCompletion completion) override;

signals:
    void sessionStarted(ravelin::RavelinNavVC *navVC);
    void signInFailed(const QString &reason);
    void returnedToSignIn();
    void swiped(bool isShown);
    void offlineChanged(bool offline);

private:
    void startSession(qint64 userId, const QMap<qint64, QStringList> &assets, const QString &token);
    void endSession(const QString &message, bool isError);
    void networkSwitched(bool offline);
    [[nodiscard]] QString currentToken() const;
    [[nodiscard]] QString workerName(qint64 userId, const QMap<qint64, QStringList> &assets) const;

    HostSetup m_setup;
    Environment m_environment;
    HostApiClient *m_client = nullptr;
    QStackedWidget *m_pages = nullptr;
    SignInScreen *m_signInScreen = nullptr;
    QWidget *m_sessionPage = nullptr;
    QVBoxLayout *m_sessionLayout = nullptr;
    HostBar *m_bar = nullptr;
    HostPanel *m_panel = nullptr;
    TaskEventSheet *m_sheet = nullptr;
    QPointer<RavelinNavVC> m_navVC;
    std::unique_ptr<ScenePicker> m_scenePicker;
    std::optional<Session> m_session;
};

} // namespace ravelin
