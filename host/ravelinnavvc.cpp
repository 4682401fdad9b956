#include "host/ravelinnavvc.h"

#include "api/apiqueue.h"
#include "api/debuglog.h"
#include "api/fatalerror.h"
#include "api/networkmanager.h"
#include "api/sessionstore.h"
#include "api/settings.h"
#include "api/usersdata.h"
#include "host/navigationbar.h"
#include "host/notificationcenter.h"
#include "host/ravelinnavvcdelegate.h"
#include "host/screen.h"
#include "resources/namedcolors.h"
#include "tasks/dashboardvc.h"
#include "tasks/dashboardvm.h"

#include <QRandomGenerator>
#include <QResizeEvent>
#include <QSettings>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace ravelin {

RavelinNavVC::RavelinNavVC(Environment environment, QWidget *parent)
    : RavelinNavVC(std::move(environment), new DashboardVC, parent)
{
}

RavelinNavVC::RavelinNavVC(Environment environment, Screen *rootScreen, QWidget *parent)
    : QWidget(parent)
    , m_environment(std::move(environment))
    , m_store(std::make_unique<SessionStore>(m_environment.userDefaults))
{
    setObjectName(QStringLiteral("RavelinNavVC"));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    m_bar = new NavigationBar(this);
    m_stackView = new QStackedWidget(this);
    column->addWidget(m_bar);
    column->addWidget(m_stackView, 1);
    connect(m_bar, &NavigationBar::backRequested, this, &RavelinNavVC::pop);

    if (rootScreen) {
        rootScreen->setNavigationHost(this);
        m_stack.append(rootScreen);
        m_stackView->addWidget(rootScreen);
        connect(rootScreen, &Screen::navigationItemChanged, this, &RavelinNavVC::updateBar);
    }
    updateBar();
}

RavelinNavVC::~RavelinNavVC()
{
    // Screens (and with the dashboard the view model and the network manager)
    // go before the session store they use.
    delete m_presented.data();
    qDeleteAll(m_stack);
    m_stack.clear();
}

void RavelinNavVC::loadViewIfNeeded()
{
    if (m_loaded)
        return;
    m_loaded = true;
    viewDidLoad();
}

void RavelinNavVC::viewDidLoad()
{
    DashboardVC *dashboard = qobject_cast<DashboardVC *>(topScreen());
    if (!dashboard)
        fatalError(QStringLiteral("The root screen of the navigation host must be the dashboard"), "RavelinNavVC");

    if (networkData) {
        m_store->store(APIData{networkData->baseUrl, networkData->tokenString, networkData->tokenTimeStamp});
    }

    auto *manager = new NetworkManager(m_environment.network, m_store.get(), m_environment.clock);
    m_networkManager = manager;
    fetchSettings();

    if (!currentUserId || !assetsList)
        fatalError(QStringLiteral("The host must set currentUserId and assetsList before the view loads"),
                   "RavelinNavVC");
    UsersData users = UsersData::build(*currentUserId, *assetsList, *QRandomGenerator::global());

    auto *viewModel = new DashboardVM(manager, std::move(users), m_environment.clock);
    manager->setParent(viewModel); // the session's manager lives with the dashboard's view model
    dashboard->setViewModel(viewModel);
    manager->setDelegate(this);
    dashboard->setVcDelegate(this);
}

void RavelinNavVC::fetchSettings()
{
    m_networkManager->request<SettingsAndConstantsResponse>(
        Router::getSettingsAndConstants(), ApiQueue::shared(), this,
        [](const Result<SettingsAndConstantsResponse> &result) {
            if (!result.isSuccess()) {
                debugLog(QStringLiteral("We got a failure trying to get the settings and constants. The error we got was: ")
                         + result.error().localizedDescription());
                return;
            }
            Settings::setCurrent(Settings::fromReceived(result.value().data));
        });
}

NetworkManager *RavelinNavVC::networkManager() const
{
    return m_networkManager;
}

DashboardVC *RavelinNavVC::dashboard() const
{
    return m_stack.isEmpty() ? nullptr : qobject_cast<DashboardVC *>(m_stack.first());
}

Screen *RavelinNavVC::topScreen() const
{
    return m_stack.isEmpty() ? nullptr : m_stack.last();
}

void RavelinNavVC::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    loadViewIfNeeded();
    if (m_appeared)
        return;
    m_appeared = true;
    if (Screen *top = topScreen()) {
        top->loadViewIfNeeded();
        top->viewWillAppear();
        m_stackView->setCurrentWidget(top);
        top->viewDidAppear();
    }
}

void RavelinNavVC::push(Screen *screen)
{
    Screen *previous = topScreen();
    screen->setNavigationHost(this);
    screen->loadViewIfNeeded();
    if (previous && m_appeared)
        previous->viewWillDisappear();
    m_stack.append(screen);
    m_stackView->addWidget(screen);
    connect(screen, &Screen::navigationItemChanged, this, &RavelinNavVC::updateBar);
    if (m_appeared)
        screen->viewWillAppear();
    m_stackView->setCurrentWidget(screen);
    updateBar();
    if (m_appeared) {
        screen->viewDidAppear();
        if (previous)
            previous->viewDidDisappear();
    }
}

void RavelinNavVC::pop()
{
    if (m_stack.size() < 2)
        return;
    Screen *leaving = m_stack.takeLast();
    Screen *top = topScreen();
    if (m_appeared) {
        leaving->viewWillDisappear();
        top->viewWillAppear();
    }
    m_stackView->setCurrentWidget(top);
    m_stackView->removeWidget(leaving);
    updateBar();
    if (m_appeared) {
        leaving->viewDidDisappear();
        top->viewDidAppear();
    }
    leaving->hide();
    leaving->deleteLater();
}

void RavelinNavVC::popToRoot()
{
    if (m_stack.size() < 2)
        return;
    // The screens between the root and the top leave without appearing again.
    while (m_stack.size() > 2) {
        Screen *middle = m_stack.takeAt(1);
        m_stackView->removeWidget(middle);
        middle->deleteLater();
    }
    pop();
}

void RavelinNavVC::present(Screen *screen)
{
    if (m_presented)
        return;
    m_presented = screen;
    screen->setNavigationHost(this);
    screen->setParent(this);
    screen->setGeometry(rect());
    screen->loadViewIfNeeded();
    if (m_appeared)
        screen->viewWillAppear();
    screen->show();
    screen->raise();
    if (m_appeared)
        screen->viewDidAppear();
}

void RavelinNavVC::dismissPresented(const std::function<void()> &completion)
{
    if (Screen *screen = m_presented) {
        if (m_appeared)
            screen->viewWillDisappear();
        screen->hide();
        m_presented = nullptr;
        if (m_appeared)
            screen->viewDidDisappear();
        screen->deleteLater();
    }
    if (completion)
        completion();
}

void RavelinNavVC::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (m_presented)
        m_presented->setGeometry(rect());
}

QColor RavelinNavVC::standardBarColor() const
{
    return NamedColors::color(ColorNames::navigationBar, QColor(0x1f, 0x4e, 0x79));
}

void RavelinNavVC::updateBar()
{
    Screen *top = topScreen();
    m_bar->setTitle(top ? top->title() : QString());
    m_bar->setBackVisible(m_stack.size() > 1);
    m_bar->setRightActions(top ? top->rightBarActions() : QList<QAction *>{});
    m_bar->setLeftActions(top ? top->leftBarActions() : QList<QAction *>{});
}

void RavelinNavVC::didSwipe(bool isShown)
{
    if (m_vcDelegate)
        m_vcDelegate->didSwipe(isShown);
}

} // namespace ravelin
