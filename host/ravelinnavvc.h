#pragma once

#include "api/clock.h"
#include "api/networkmanagerdelegate.h"
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
class QSettings;
class QStackedWidget;

namespace ravelin {

class DashboardVC;
class NavigationBar;
class NetworkManager;
class NotificationCenter;
class RavelinNavVCDelegate;
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
class RavelinNavVC : public QWidget, public DashboardVCDelegate, public NetworkManagerDelegate
{
    Q_OBJECT

public:
    // What the library runs on: the user defaults store in which the session data
    // is kept, the network access, the notification centre the host posts task
    // events to, and the clock.
    struct Environment
    {
        QSettings *userDefaults = nullptr;
        QNetworkAccessManager *network = nullptr;
        NotificationCenter *notifications = nullptr;
        Clock clock = systemClock();
    };

    // The root screen is a new dashboard unless one is given.
    explicit RavelinNavVC(Environment environment, QWidget *parent = nullptr);
    RavelinNavVC(Environment environment, Screen *rootScreen, QWidget *parent = nullptr);
    ~RavelinNavVC() override;

    // The inputs, all unset until the host sets them.
    std::optional<qint64> currentUserId;
    std::optional<QMap<qint64, QStringList>> assetsList; // id -> {name, icon}
    std::optional<NetworkData> networkData;
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

    // Presentation over the stack (one screen at a time).
    void present(Screen *screen);
    void dismissPresented(const std::function<void()> &completion = {});
    [[nodiscard]] Screen *presentedScreen() const { return m_presented; }

    [[nodiscard]] NavigationBar *navigationBar() const { return m_bar; }
    [[nodiscard]] QColor standardBarColor() const;
    [[nodiscard]] NotificationCenter *notificationCenter() const { return m_environment.notifications; }
    [[nodiscard]] NetworkManager *networkManager() const;
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

    Environment m_environment;
    std::unique_ptr<SessionStore> m_store;
    RavelinNavVCDelegate *m_vcDelegate = nullptr;
    NavigationBar *m_bar = nullptr;
    QStackedWidget *m_stackView = nullptr;
    QList<Screen *> m_stack;
    QPointer<Screen> m_presented;
    QPointer<NetworkManager> m_networkManager;
    bool m_loaded = false;
    bool m_appeared = false;
};

} // namespace ravelin
