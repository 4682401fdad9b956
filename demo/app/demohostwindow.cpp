#include "demo/app/demohostwindow.h"

#include "api/debuglog.h"
#include "api/outboxsender.h"
#include "api/sessionstore.h"
#include "demo/app/democamera.h"
#include "demo/app/hostapiclient.h"
#include "demo/app/hostbar.h"
#include "demo/app/hostbrand.h"
#include "demo/app/hostevents.h"
#include "demo/app/hostpanel.h"
#include "demo/app/scenepicker.h"
#include "demo/app/signinscreen.h"
#include "demo/app/switchablenetworkaccess.h"
#include "demo/app/taskeventsheet.h"
#include "host/notificationcenter.h"
#include "host/ravelinnavvc.h"
#include "tasks/dashboardheaderview.h"
#include "tasks/dashboardvc.h"
#include "tasks/dashboardvm.h"
#include "views/alertpresenter.h"
#include "views/alertview.h"

#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace ravelin {

namespace {
Q_LOGGING_CATEGORY(lcDemo, "ravelin.demo")
} // namespace

DemoHostWindow::DemoHostWindow(HostSetup setup, Environment environment, QWidget *parent)
    : QWidget(parent)
    , m_setup(std::move(setup))
    , m_environment(std::move(environment))
    , m_scenePicker(std::make_unique<ScenePicker>())
{
    setObjectName(QStringLiteral("demoHostWindow"));
    setWindowTitle(hostbrand::productName);
    resize(phoneSize);
    setMinimumSize(340, 600);

    m_client = new HostApiClient(m_environment.network, m_setup.baseUrl, this);
    m_client->setTrustedCertificate(m_setup.certificatePem);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    m_pages = new QStackedWidget(this);
    column->addWidget(m_pages);

    m_signInScreen = new SignInScreen(m_pages);
    m_signInScreen->setWorkers(m_setup.workers);
    m_signInScreen->setServerNote(
        m_setup.preset
            ? QStringLiteral("Server https://%1 · token from the command line").arg(m_setup.baseUrl)
            : QStringLiteral("Demo server https://%1 on this machine\nloopback only · self-signed certificate")
                  .arg(m_setup.baseUrl));
    connect(m_signInScreen, &SignInScreen::signInRequested, this, &DemoHostWindow::signIn);
    m_pages->addWidget(m_signInScreen);

    m_sessionPage = new QWidget(m_pages);
    m_sessionPage->setObjectName(QStringLiteral("sessionPage"));
    m_sessionLayout = new QVBoxLayout(m_sessionPage);
    m_sessionLayout->setContentsMargins(0, 0, 0, 0);
    m_sessionLayout->setSpacing(0);
    m_bar = new HostBar(m_sessionPage);
    m_sessionLayout->addWidget(m_bar);
    connect(m_bar, &HostBar::taskEventRequested, this, &DemoHostWindow::openTaskEventSheet);
    connect(m_bar, &HostBar::emergencyToggled, this, [this](bool inForce) {
        if (m_environment.notifications)
            hostevents::postEmergency(*m_environment.notifications, inForce);
    });
    m_pages->addWidget(m_sessionPage);
    m_pages->setCurrentWidget(m_signInScreen);

    m_sheet = new TaskEventSheet(this);
    connect(m_sheet, &TaskEventSheet::postRequested, this, &DemoHostWindow::postTaskEvent);

    m_panel = new HostPanel(this);
    connect(m_panel, &HostPanel::closeRequested, this, &DemoHostWindow::closeHostPanel);
    connect(m_panel, &HostPanel::signOutRequested, this, &DemoHostWindow::signOut);

    connect(m_bar, &HostBar::offlineToggled, this, &DemoHostWindow::setOffline);
    connect(m_signInScreen, &SignInScreen::offlineToggled, this, &DemoHostWindow::setOffline);
    if (m_environment.network)
        connect(m_environment.network, &SwitchableNetworkAccess::offlineChanged, this,
                &DemoHostWindow::networkSwitched);
    m_bar->offlineButton()->setEnabled(m_environment.network != nullptr);
    m_signInScreen->offlineButton()->setEnabled(m_environment.network != nullptr);
    m_bar->setOffline(isOffline());
    m_signInScreen->setOffline(isOffline());
}

DemoHostWindow::~DemoHostWindow()
{
    // The task client goes first: its screens still talk to this delegate while they close.
    if (m_navVC)
        m_navVC->setVcDelegate(nullptr);
    delete m_navVC.data();
}

RavelinNavVC *DemoHostWindow::navVC() const
{
    return m_navVC;
}

void DemoHostWindow::signIn(qint64 workerId)
{
    if (m_session || m_signInScreen->isBusy())
        return;
    if (m_setup.preset) {
        const auto worker = std::find_if(m_setup.workers.cbegin(), m_setup.workers.cend(),
                                         [this](const HostSetup::Worker &w) { return w.id == m_setup.preset->userId; });
        QMap<qint64, QStringList> assets;
        if (worker != m_setup.workers.cend())
            assets.insert(worker->id, QStringList{worker->name, worker->icon});
        startSession(m_setup.preset->userId, assets, m_setup.preset->token);
        return;
    }
    m_signInScreen->setBusy(true);
    m_signInScreen->setMessage(QString());
    m_client->signIn(workerId, this, [this](const Result<SignInAnswer, QString> &result) {
        if (!result.isSuccess()) {
            m_signInScreen->setBusy(false);
            m_signInScreen->setMessage(QStringLiteral("Could not sign in. ") + result.error(), true);
            emit signInFailed(result.error());
            return;
        }
        const SignInAnswer &answer = result.value();
        startSession(answer.userId, answer.assetsList(), answer.token);
    });
}

void DemoHostWindow::startSession(qint64 userId, const QMap<qint64, QStringList> &assets, const QString &token)
{
    if (m_session)
        return;
    Session session{userId, workerName(userId, assets), token, toDateTime(m_environment.clock()), assets};

    RavelinNavVC::Environment environment;
    environment.userDefaults = m_environment.userDefaults;
    environment.network = m_environment.network;
    environment.notifications = m_environment.notifications;
    environment.clock = m_environment.clock;
    environment.imagePicker = m_environment.imagePicker ? m_environment.imagePicker : m_scenePicker.get();
    environment.cameraFrameSource = m_environment.cameraFrameSource;
    environment.trustPolicy = m_environment.trustPolicy;
    environment.offlineStore = m_environment.offlineStore;
    if (!environment.cameraFrameSource) {
        // The scanner looks at a wall with the sticker of an open checkpoint of the task on screen.
        environment.cameraFrameSource
            = [self = QPointer<DemoHostWindow>(this)]() -> std::unique_ptr<CameraFrameSource> {
            return std::make_unique<DemoCamera>(
                [self] { return DemoCamera::openCheckpoint(self ? self->navVC() : nullptr); });
        };
    }
    auto *navVC = new RavelinNavVC(std::move(environment), m_sessionPage);
    navVC->currentUserId = userId;
    navVC->assetsList = assets;
    navVC->networkData = NetworkData{m_setup.baseUrl, session.tokenTimeStamp, token};
    navVC->setVcDelegate(this);
    m_sessionLayout->insertWidget(0, navVC, 1);
    m_navVC = navVC;
    m_session = session;

    m_bar->setEmergency(false);
    m_panel->setUser(session.userName, QStringLiteral("Field worker · signed in to %1").arg(m_setup.baseUrl));
    m_signInScreen->setBusy(false);
    m_signInScreen->setMessage(QString());
    m_pages->setCurrentWidget(m_sessionPage);
    navVC->loadViewIfNeeded();
    emit sessionStarted(navVC);
}

void DemoHostWindow::endSession(const QString &message, bool isError)
{
    // Whatever the task client still shows over the window goes with it.
    const QList<AlertView *> alerts = AlertPresenter::visibleAlerts(this);
    for (AlertView *alert : alerts)
        alert->dismiss();
    m_panel->setShown(false, false);
    m_sheet->dismiss();
    m_bar->setEmergency(false);
    if (RavelinNavVC *navVC = m_navVC) {
        m_navVC = nullptr;
        navVC->setVcDelegate(nullptr);
        navVC->hide();
        m_sessionLayout->removeWidget(navVC);
        // Later: the session may end from inside one of its own answers.
        navVC->deleteLater();
    }
    m_session.reset();
    m_pages->setCurrentWidget(m_signInScreen);
    m_signInScreen->setBusy(false);
    m_signInScreen->setMessage(message, isError);
    emit returnedToSignIn();
}

void DemoHostWindow::signOut()
{
    if (!m_session)
        return;
    endSession(QStringLiteral("Signed out."), false);
}

void DemoHostWindow::sessionExpired()
{
    if (!m_session)
        return;
    debugLog(lcDemo, QStringLiteral("Session expired for user"), QString::number(m_session->userId));
    endSession(QStringLiteral("Your session has expired. Please sign in again."), true);
}

void DemoHostWindow::didSwipe(bool isShown)
{
    emit swiped(isShown);
    if (!m_session)
        return;
    m_panel->setShown(!isShown);
}

void DemoHostWindow::closeHostPanel()
{
    m_panel->setShown(false);
    // The dashboard's panel button follows, so that its next tap opens the panel again.
    if (m_navVC && m_navVC->dashboard() && m_navVC->dashboard()->headerView())
        m_navVC->dashboard()->headerView()->setPanelButtonSelected(false);
}

bool DemoHostWindow::isOffline() const
{
    return m_environment.network && m_environment.network->isOffline();
}

void DemoHostWindow::setOffline(bool offline)
{
    if (m_environment.network)
        m_environment.network->setOffline(offline);
}

void DemoHostWindow::networkSwitched(bool offline)
{
    m_bar->setOffline(offline);
    m_signInScreen->setOffline(offline);
    if (!offline && m_navVC) {
        // Back online: what waited goes now, as a phone's reachability would have it.
        if (OutboxSender *sender = m_navVC->outboxSender())
            sender->syncNow();
    }
    emit offlineChanged(offline);
}

QString DemoHostWindow::currentToken() const
{
    // The library regenerates the token when it gets old and stores the new one.
    if (m_environment.userDefaults) {
        const auto stored = SessionStore(m_environment.userDefaults).load();
        if (stored && stored->baseURL == m_setup.baseUrl && !stored->tokenString.isEmpty())
            return stored->tokenString;
    }
    return m_session ? m_session->token : QString();
}

void DemoHostWindow::uploadImage(const QImage &image, const QString &fileName, UploadCompletion completion)
{
    if (!m_session) {
        QTimer::singleShot(0, this, [completion] { completion(false, std::nullopt); });
        return;
    }
    m_client->uploadPicture(image, fileName, currentToken(), this,
                            [completion](const Result<UploadAnswer, QString> &result) {
                                if (!result.isSuccess()) {
                                    debugLog(lcDemo, QStringLiteral("Picture upload failed:"), result.error());
                                    completion(false, std::nullopt);
                                    return;
                                }
                                completion(true, result.value().path);
                            });
}

QList<HostSetup::TaskChoice> DemoHostWindow::taskChoices() const
{
    QList<HostSetup::TaskChoice> choices = m_setup.tasks;
    if (choices.isEmpty() && m_navVC && m_navVC->dashboard() && m_navVC->dashboard()->viewModel()) {
        for (const TaskPtr &task : m_navVC->dashboard()->viewModel()->taskList().tasks)
            choices.append({task->id, task->name, task->assignedUserId});
    }
    if (m_session) {
        const qint64 userId = m_session->userId;
        std::stable_partition(choices.begin(), choices.end(), [userId](const HostSetup::TaskChoice &choice) {
            return choice.assignedUserId == userId;
        });
    }
    return choices;
}

void DemoHostWindow::openTaskEventSheet()
{
    m_sheet->setTasks(taskChoices());
    m_sheet->open();
}

void DemoHostWindow::postTaskEvent(qint64 taskId, const QString &taskName, const QString &kind)
{
    const TaskUpdateEventPtr event = hostevents::makeTaskEvent(
        taskId, taskName, kind, m_session ? std::optional<qint64>(m_session->userId) : std::nullopt);
    if (!event || !m_environment.notifications)
        return;
    hostevents::postTaskEvent(*m_environment.notifications, event);
}

void DemoHostWindow::setEmergency(bool inForce)
{
    m_bar->setEmergency(inForce);
    if (m_environment.notifications)
        hostevents::postEmergency(*m_environment.notifications, inForce);
}

QString DemoHostWindow::workerName(qint64 userId, const QMap<qint64, QStringList> &assets) const
{
    if (const auto found = assets.constFind(userId); found != assets.cend() && !found->isEmpty())
        return found->constFirst();
    for (const HostSetup::Worker &worker : m_setup.workers) {
        if (worker.id == userId)
            return worker.name;
    }
    return QStringLiteral("User %1").arg(userId);
}

} // namespace ravelin
