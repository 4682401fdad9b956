#include "host/ravelinnavvc.h"

#include "api/apiqueue.h"
#include "api/debuglog.h"
#include "api/fatalerror.h"
#include "api/networkmanager.h"
#include "api/offlinestore.h"
#include "api/outboxsender.h"
#include "api/sessionstore.h"
#include "api/settings.h"
#include "api/usersdata.h"
#include "host/defaultimagepicker.h"
#include "host/desktopcamerapermission.h"
#include "host/navigationbar.h"
#include "host/notificationcenter.h"
#include "host/outboxvc.h"
#include "host/qtcameraframesource.h"
#include "host/ravelinnavvcdelegate.h"
#include "host/screen.h"
#include "host/silenthapticfeedback.h"
#include "host/synctexts.h"
#include "resources/namedcolors.h"
#include "tasks/dashboardvc.h"
#include "tasks/dashboardvm.h"
#include "views/focuschain.h"
#include "views/keyboardnotifier.h"

#include <QApplication>
#include <QNetworkInformation>
#include <QRandomGenerator>
#include <QResizeEvent>
#include <QSettings>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace ravelin {

RavelinNavVC::RavelinNavVC(Environment environment, QWidget *parent)
    : RavelinNavVC(std::move(environment), new DashboardVC, parent)
{ }

RavelinNavVC::RavelinNavVC(Environment environment, Screen *rootScreen, QWidget *parent)
    : QWidget(parent)
    , m_environment(std::move(environment))
    , m_store(std::make_unique<SessionStore>(m_environment.userDefaults))
{
    // Events the host posts are never lost to a missing centre.
    if (!m_environment.notifications)
        m_environment.notifications = &NotificationCenter::defaultCenter();
    setObjectName(QStringLiteral("RavelinNavVC"));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    m_bar = new NavigationBar(this);
    m_stackView = new QStackedWidget(this);
    column->addWidget(m_bar);
    column->addWidget(m_stackView, 1);
    connect(m_bar, &NavigationBar::backRequested, this, &RavelinNavVC::pop);
    if (m_environment.notifications)
        m_keyboardNotifier = new KeyboardNotifier(*m_environment.notifications, QGuiApplication::inputMethod(), this);

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

    // Held by this host until the dashboard's view model takes it over below.
    auto *manager = new NetworkManager(m_environment.network, m_store.get(), m_environment.clock, this);
    manager->setTrustPolicy(m_environment.trustPolicy);
    m_networkManager = manager;
    fetchSettings();

    if (!currentUserId || !assetsList)
        fatalError(QStringLiteral("The host must set currentUserId and assetsList before the view loads"),
                   "RavelinNavVC");
    UsersData users = UsersData::build(*currentUserId, *assetsList, *QRandomGenerator::global());

    if (OfflineStore *offline = m_environment.offlineStore) {
        // Answers are kept for the signed-in user, and that user's results sent.
        const qint64 userId = *currentUserId;
        manager->setAnswerObserver(
            [offline, userId, clock = m_environment.clock](const Router &route, const QByteArray &body) {
                offline->storeAnswer(userId, route.path(), body, clock());
            });
        manager->setCacheReader(
            [offline, userId](const Router &route) { return offline->cachedAnswer(userId, route.path()); });
        m_outboxSender = new OutboxSender(offline, manager, manager);
        m_outboxSender->setUserId(userId);
        manager->setOutbox(m_outboxSender);
        QNetworkInformation *reachability = m_environment.reachability;
        if (reachability == nullptr && QNetworkInformation::loadDefaultBackend())
            reachability = QNetworkInformation::instance();
        m_outboxSender->followReachability(reachability);
        // The bar counts what has not reached the server; the count opens the list.
        connect(m_outboxSender, &OutboxSender::countsChanged, this, &RavelinNavVC::updateBar);
        updateBar();
        connect(m_bar, &NavigationBar::syncRequested, this, [this] {
            if (!qobject_cast<OutboxVC *>(topScreen()))
                push(new OutboxVC);
        });
    }

    auto *viewModel = new DashboardVM(manager, std::move(users), m_environment.clock);
    manager->setParent(viewModel); // the session's manager lives with the dashboard's view model
    dashboard->setViewModel(viewModel);
    manager->setDelegate(this);
    dashboard->setVcDelegate(this);
}

OutboxSender *RavelinNavVC::outboxSender() const
{
    return m_outboxSender;
}

void RavelinNavVC::fetchSettings()
{
    m_networkManager->request<SettingsAndConstantsResponse, Settings>(
        Router::getSettingsAndConstants(), ApiQueue::shared(), this,
        [](SettingsAndConstantsResponse &&response) {
            // Task answers decoded after this one look their categories up here.
            Settings received = Settings::fromReceived(response.data);
            Settings::receivedOnQueue(received);
            return received;
        },
        [](const Result<Settings> &result) {
            if (!result.isSuccess()) {
                debugLog(
                    lcHost,
                    QStringLiteral("We got a failure trying to get the settings and constants. The error we got was: ")
                        + result.error().localizedDescription());
                return;
            }
            Settings::setCurrent(result.value());
        });
}

ImagePicker *RavelinNavVC::imagePicker()
{
    if (m_environment.imagePicker)
        return m_environment.imagePicker;
    if (!m_defaultImagePicker)
        m_defaultImagePicker = std::make_unique<DefaultImagePicker>();
    return m_defaultImagePicker.get();
}

CameraPermission *RavelinNavVC::cameraPermission()
{
    if (m_environment.cameraPermission)
        return m_environment.cameraPermission;
    if (!m_defaultCameraPermission)
        m_defaultCameraPermission = std::make_unique<DesktopCameraPermission>();
    return m_defaultCameraPermission.get();
}

HapticFeedback *RavelinNavVC::hapticFeedback()
{
    if (m_environment.hapticFeedback)
        return m_environment.hapticFeedback;
    if (!m_defaultHapticFeedback)
        m_defaultHapticFeedback = std::make_unique<SilentHapticFeedback>();
    return m_defaultHapticFeedback.get();
}

std::unique_ptr<CameraFrameSource> RavelinNavVC::makeCameraFrameSource() const
{
    if (m_environment.cameraFrameSource)
        return m_environment.cameraFrameSource();
    return std::make_unique<QtCameraFrameSource>();
}

NetworkManager *RavelinNavVC::networkManager() const
{
    return m_networkManager;
}

DashboardVC *RavelinNavVC::dashboard() const
{
    return m_stack.isEmpty() ? nullptr : qobject_cast<DashboardVC *>(m_stack.first());
}

Screen *RavelinNavVC::presentedScreen() const
{
    return m_presented;
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

bool RavelinNavVC::hasFocusInside() const
{
    const QWidget *focus = QApplication::focusWidget();
    return focus && (focus == this || isAncestorOf(focus));
}

void RavelinNavVC::focusTopScreen(bool focusWasHere)
{
    Screen *top = topScreen();
    if (!focusWasHere || !top || m_presented)
        return;
    if (QWidget *last = top->focusWidget(); last && last != top && FocusChain::takesTabFocus(last))
        last->setFocus(Qt::OtherFocusReason);
    else
        top->setFocus(Qt::OtherFocusReason);
}

void RavelinNavVC::push(Screen *screen)
{
    const bool focusWasHere = hasFocusInside();
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
    focusTopScreen(focusWasHere);
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
    const bool focusWasHere = hasFocusInside();
    Screen *leaving = m_stack.takeLast();
    Screen *top = topScreen();
    if (m_appeared) {
        leaving->viewWillDisappear();
        top->viewWillAppear();
    }
    m_stackView->setCurrentWidget(top);
    m_stackView->removeWidget(leaving);
    updateBar();
    focusTopScreen(focusWasHere);
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
    m_focusBeforePresenting = QApplication::focusWidget();
    screen->setNavigationHost(this);
    screen->setParent(this);
    screen->setGeometry(rect());
    screen->loadViewIfNeeded();
    if (m_appeared)
        screen->viewWillAppear();
    screen->show();
    screen->raise();
    // The sheet itself takes the focus: Escape closes it, Tab goes to its first control.
    screen->setFocus(Qt::OtherFocusReason);
    m_bar->hide();
    m_stackView->hide();
    if (m_appeared)
        screen->viewDidAppear();
}

void RavelinNavVC::dismissPresented(const std::function<void()> &completion)
{
    if (Screen *screen = m_presented) {
        if (m_appeared)
            screen->viewWillDisappear();
        m_bar->show();
        m_stackView->show();
        const bool focusWasOnSheet = !QApplication::focusWidget() || screen == QApplication::focusWidget()
            || screen->isAncestorOf(QApplication::focusWidget());
        screen->hide();
        m_presented = nullptr;
        if (focusWasOnSheet) {
            if (m_focusBeforePresenting && m_focusBeforePresenting->isVisible())
                m_focusBeforePresenting->setFocus(Qt::OtherFocusReason);
            else
                focusTopScreen(true);
        }
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
    m_bar->setPrompt(top ? top->prompt() : QString());
    m_bar->setBackVisible(m_stack.size() > 1);
    m_bar->setRightActions(top ? top->rightBarActions() : QList<QAction *>{});
    m_bar->setLeftActions(top ? top->leftBarActions() : QList<QAction *>{});
    // The count of results not on the server, except on their own list.
    const OfflineStore::Counts counts = m_outboxSender ? m_outboxSender->counts() : OfflineStore::Counts{};
    m_bar->setSyncText(qobject_cast<OutboxVC *>(top) ? QString()
                                                     : SyncTexts::countText(counts.waiting, counts.refused));
}

void RavelinNavVC::didSwipe(bool isShown)
{
    if (m_vcDelegate)
        m_vcDelegate->didSwipe(isShown);
}

} // namespace ravelin
