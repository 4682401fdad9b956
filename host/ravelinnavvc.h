#pragma once

#include "api/clock.h"
#include "api/guardedpointer.h"
#include "api/networkmanagerdelegate.h"
#include "api/trustpolicy.h"
#include "host/delays.h"
#include "host/ravelinnavvcdelegate.h"
#include "tasks/dashboardvcdelegate.h"

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

class QNetworkAccessManager;
class QNetworkInformation;
class QSettings;
class QStackedWidget;

namespace ravelin {

class CameraFrameSource;
class CameraPermission;
class HapticFeedback;
class ImagePicker;
class KeyboardNotifier;

class DashboardVC;
class NavigationBar;
class NetworkManager;
class NotificationCenter;
class OfflineStore;
class OutboxSender;
class Screen;
class SessionStore;

// The session's network data as the host application has it.
struct NetworkData
{
    QString baseUrl; // the API host, without scheme
    QDateTime tokenTimeStamp; // when the host obtained the token
    QString tokenString;
};

// The one widget the host application touches. The host creates it, fills in
// the four inputs and shows it; when it first loads it turns the inputs into the
// session (stored session data, the settings request, the users, the dashboard's
// view model) and from then on forwards the library's events to the host.
//
// It shows a navigation bar over a stack of screens whose root is the
// dashboard, and presents screens over the stack.
class RavelinNavVC
    : public QWidget
    , public DashboardVCDelegate
    , public NetworkManagerDelegate
{
    Q_OBJECT

public:
    // What the library runs on: the user defaults store in which the session data
    // is kept, the network access, the notification centre the host posts task
    // events to (the process-wide centre when none is given), and the clock.
    struct Environment
    {
        QSettings *userDefaults = nullptr;
        QNetworkAccessManager *network = nullptr;
        NotificationCenter *notifications = nullptr;
        Clock clock = systemClock();
        // How pictures are picked; the library's own picker when unset. Not owned.
        ImagePicker *imagePicker = nullptr;
        // The camera permission of the platform; none to ask on a desktop when unset. Not owned.
        CameraPermission *cameraPermission = nullptr;
        // The platform's vibration; none when unset. Not owned.
        HapticFeedback *hapticFeedback = nullptr;
        // Makes the scanner's picture feed; the device's camera when unset.
        std::function<std::unique_ptr<CameraFrameSource>()> cameraFrameSource = {};
        // The alerts' and the scanner's waits.
        Delays delays = {};
        // Which server certificates the library accepts; any when unset.
        TrustPolicy trustPolicy = {};
        // Where answers and unsent results are kept without a connection; none:
        // the library works online only. Not owned; used on the main thread.
        OfflineStore *offlineStore = nullptr;
        // Tells the outbox when the network is back. When unset and there is an
        // offline store, the platform's reachability backend is loaded, where one
        // exists. Not owned.
        QNetworkInformation *reachability = nullptr;
    };

    // The root screen is a new dashboard unless one is given.
    explicit RavelinNavVC(Environment environment, QWidget *parent = nullptr);
    RavelinNavVC(Environment environment, Screen *rootScreen, QWidget *parent = nullptr);
    ~RavelinNavVC() override;

    // The inputs, all unset until the host sets them.
    std::optional<qint64> currentUserId;
    std::optional<QMap<qint64, QStringList>> assetsList; // id -> {name, icon}
    std::optional<NetworkData> networkData;
    // The host application's delegate, not owned: the host keeps it, and when the
    // host destroys it first the navigation host reads null and stops calling it.
    [[nodiscard]] RavelinNavVCDelegate *vcDelegate() const { return m_vcDelegate; }
    void setVcDelegate(RavelinNavVCDelegate *delegate) { m_vcDelegate = delegate; }

    // Runs the session start once (on first show, or when called).
    void loadViewIfNeeded();
    [[nodiscard]] bool isViewLoaded() const { return m_loaded; }

    // Navigation stack.
    void push(Screen *screen);
    void pop();
    void popToRoot();
    [[nodiscard]] Screen *topScreen() const;
    [[nodiscard]] QList<Screen *> screens() const { return m_stack; }
    [[nodiscard]] DashboardVC *dashboard() const;

    // Presentation over the stack (one screen at a time). While a screen is
    // presented the bar and the stack are out of sight (and out of reach of the
    // keyboard and of assistive technology); the keyboard focus moves onto the
    // presented screen and comes back where it was when it is dismissed.
    void present(Screen *screen);
    void dismissPresented(const std::function<void()> &completion = {});
    [[nodiscard]] Screen *presentedScreen() const;

    [[nodiscard]] NavigationBar *navigationBar() const { return m_bar; }
    [[nodiscard]] QColor standardBarColor() const;
    [[nodiscard]] NotificationCenter *notificationCenter() const { return m_environment.notifications; }
    // The environment's picker, else the library's own.
    [[nodiscard]] ImagePicker *imagePicker();
    // The environment's permission and vibration, else the library's stand-ins.
    [[nodiscard]] CameraPermission *cameraPermission();
    [[nodiscard]] HapticFeedback *hapticFeedback();
    // A new picture feed for a scanner: the environment's, else the device's camera.
    [[nodiscard]] std::unique_ptr<CameraFrameSource> makeCameraFrameSource() const;
    [[nodiscard]] NetworkManager *networkManager() const;
    // Sends the unsent results of the signed-in user; none without an offline store.
    [[nodiscard]] OutboxSender *outboxSender() const;
    [[nodiscard]] const Environment &environment() const { return m_environment; }

    // DashboardVCDelegate: forwarded to the host application when it listens.
    void didSwipe(bool isShown) override;
    // NetworkManagerDelegate
    [[nodiscard]] RavelinNavVCDelegate *hostDelegate() const override { return m_vcDelegate; }

protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void viewDidLoad();
    void fetchSettings();
    void showTop();
    void updateBar();
    // After a push or pop: a focus that was on the host goes to the top screen
    // (where it last was on that screen, else to the screen itself).
    void focusTopScreen(bool focusWasHere);
    [[nodiscard]] bool hasFocusInside() const;

    Environment m_environment;
    std::unique_ptr<SessionStore> m_store;
    GuardedPointer<RavelinNavVCDelegate> m_vcDelegate;
    NavigationBar *m_bar = nullptr;
    QStackedWidget *m_stackView = nullptr;
    QList<Screen *> m_stack;
    QPointer<Screen> m_presented;
    QPointer<QWidget> m_focusBeforePresenting;
    QPointer<NetworkManager> m_networkManager;
    QPointer<OutboxSender> m_outboxSender;
    std::unique_ptr<ImagePicker> m_defaultImagePicker;
    std::unique_ptr<CameraPermission> m_defaultCameraPermission;
    std::unique_ptr<HapticFeedback> m_defaultHapticFeedback;
    // Tells the screens with text fields where the on-screen keyboard is.
    KeyboardNotifier *m_keyboardNotifier = nullptr;
    bool m_loaded = false;
    bool m_appeared = false;
};

} // namespace ravelin
