#include "items/qrscannervc.h"

#include "api/debuglog.h"
#include "host/cameraframesource.h"
#include "host/camerapermission.h"
#include "host/hapticfeedback.h"
#include "host/imagepicker.h"
#include "host/ravelinnavvc.h"
#include "items/itemstexts.h"
#include "items/qrframedecoder.h"
#include "items/qrpreviewview.h"
#include "views/alertpresenter.h"
#include "views/touchtarget.h"

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace ravelin {

QRScannerVC::QRScannerVC(QWidget *parent)
    : Screen(parent)
{
    setTitle(ItemsTexts::scannerTitle());
    setObjectName(QStringLiteral("QRScannerVC"));
}

QRScannerVC::~QRScannerVC()
{
    if (m_frameSource)
        m_frameSource->stop();
}

std::pair<QString, QString> QRScannerVC::cameraAccessDenied()
{
    static const std::pair<QString, QString> texts{ItemsTexts::cameraAccessDeniedTitle(),
                                                   ItemsTexts::cameraAccessDeniedMessage()};
    return texts;
}

void QRScannerVC::viewDidLoad()
{
    buildViews();
    askPermissionThenStart();
}

void QRScannerVC::buildViews()
{
    setAutoFillBackground(true);
    QPalette background = palette();
    background.setColor(QPalette::Window, Qt::black);
    setPalette(background);

    m_preview = new QrPreviewView(this);
    m_preview->setObjectName(QStringLiteral("videoPreviewLayer"));
    m_preview->setAccessibleName(ItemsTexts::cameraPicture());
    m_preview->hide();

    // The outline: a green border of 2 and no fill, in front of the picture.
    m_qrCodeFrameView = new QFrame(this);
    m_qrCodeFrameView->setObjectName(QStringLiteral("qrCodeFrameView"));
    m_qrCodeFrameView->setStyleSheet(
        QStringLiteral("QFrame#qrCodeFrameView { border: 2px solid #00FF00; background: transparent; }"));
    m_qrCodeFrameView->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_qrCodeFrameView->setGeometry(QRect());
    m_qrCodeFrameView->hide();

    m_instructionsView = new QWidget(this);
    m_instructionsView->setObjectName(QStringLiteral("instructionsView"));
    m_instructionsView->setAttribute(Qt::WA_StyledBackground);
    m_instructionsView->setStyleSheet(QStringLiteral("QWidget#instructionsView { background: rgba(0, 0, 0, 170); }"));
    auto *panel = new QVBoxLayout(m_instructionsView);
    panel->setContentsMargins(20, 16, 20, 20);
    panel->setSpacing(12);
    m_messageLabel = new QLabel(m_instructionsView);
    m_messageLabel->setObjectName(QStringLiteral("messageLabel"));
    m_messageLabel->setWordWrap(true);
    m_messageLabel->setAlignment(Qt::AlignCenter);
    m_messageLabel->setStyleSheet(QStringLiteral("color: white;"));
    QFont font = m_messageLabel->font();
    font.setPointSizeF(font.pointSizeF() * 1.1);
    m_messageLabel->setFont(font);
    m_messageLabel->hide();
    m_photoButton = new QPushButton(ItemsTexts::scanFromPhoto(), m_instructionsView);
    m_photoButton->setObjectName(QStringLiteral("scanFromPhotoButton"));
    m_photoButton->setCursor(Qt::PointingHandCursor);
    m_photoButton->setMinimumHeight(TouchTarget::minimumSide);
    m_photoButton->setStyleSheet(
        QStringLiteral("QPushButton { color: white; background: transparent; border: 1px solid white;"
                       " border-radius: 6px; padding: 8px 16px; }"
                       " QPushButton:pressed { background: rgba(255, 255, 255, 60); }"));
    panel->addWidget(m_messageLabel);
    panel->addWidget(m_photoButton, 0, Qt::AlignHCenter);
    connect(m_photoButton, &QPushButton::clicked, this, &QRScannerVC::scanFromPhoto);

    m_decoder = new QrFrameDecoder(this);
    m_decoder->setObjectName(QStringLiteral("frameDecoder"));
    connect(m_decoder, &QrFrameDecoder::decoded, this, &QRScannerVC::metadataOutput);
    m_photoDecoder = new QrFrameDecoder(this);
    m_photoDecoder->setObjectName(QStringLiteral("photoDecoder"));
    connect(m_photoDecoder, &QrFrameDecoder::decoded, this,
            [this](const QList<QrDetection> &codes) { photoRead(codes); });
    layoutPanels();
}

void QRScannerVC::askPermissionThenStart()
{
    RavelinNavVC *host = navigationHost();
    CameraPermission *permission = host ? host->cameraPermission() : nullptr;
    if (!permission || permission->status() == CameraPermission::Status::authorized) {
        if (configure())
            QTimer::singleShot(0, this, &QRScannerVC::startRunning);
        return;
    }
    permission->request([self = QPointer<QRScannerVC>(this)](bool granted) {
        if (!self)
            return;
        if (!granted) {
            self->presentPermissionAlert();
            return;
        }
        if (self->configure())
            self->startRunning();
    });
}

void QRScannerVC::presentPermissionAlert()
{
    const auto [title, message] = cameraAccessDenied();
    Alert alert;
    alert.title = title;
    alert.message = message;
    alert.addAction(ItemsTexts::cancel(), AlertActionStyle::cancel);
    alert.addAction(ItemsTexts::allow(), AlertActionStyle::standard, [host = QPointer<RavelinNavVC>(navigationHost())] {
        if (host)
            host->cameraPermission()->openSettings();
    });
    AlertPresenter::present(this, std::move(alert));
}

bool QRScannerVC::configure()
{
    if (!m_frameSource) {
        if (RavelinNavVC *host = navigationHost())
            m_frameSource = host->makeCameraFrameSource();
    }
    if (!m_frameSource || !m_frameSource->isAvailable()) {
        debugLog(lcItems, ItemsTexts::noCameraDevice);
        return false;
    }
    connect(m_frameSource.get(), &CameraFrameSource::frameArrived, this, &QRScannerVC::frameArrived,
            Qt::UniqueConnection);
    connect(m_frameSource.get(), &CameraFrameSource::inputFailed, this, &QRScannerVC::inputFailed,
            Qt::UniqueConnection);
    m_preview->show();
    m_preview->lower();
    m_qrCodeFrameView->show();
    m_qrCodeFrameView->raise();
    m_state = State::configured;
    return true;
}

void QRScannerVC::startRunning()
{
    if (m_state != State::configured)
        return;
    setMessage(ItemsTexts::scannerInstructions());
    m_instructionsView->show();
    m_instructionsView->raise();
    m_state = State::running;
    m_frameSource->start();
}

void QRScannerVC::frameArrived(const QImage &frame)
{
    if (m_state != State::running)
        return;
    m_preview->setFrame(frame);
    // Frames that come while one is being read are shown but not read.
    m_decoder->submit(frame);
}

void QRScannerVC::inputFailed(const QString &description)
{
    debugLog(lcItems, QStringLiteral("The camera input failed:"), description);
    if (m_state != State::configured && m_state != State::running)
        return;
    m_frameSource->stop();
    collapseOutline();
    removePreview();
    m_state = State::idle;
}

void QRScannerVC::metadataOutput(const QList<QrDetection> &codes, const QSize &frameSize)
{
    // Frames read after the feed stopped say nothing any more.
    if (m_state != State::running)
        return;
    if (codes.isEmpty()) {
        collapseOutline();
        setMessage(ItemsTexts::scannerInstructions());
        return;
    }
    // Only QR codes are looked for, and only the first one counts.
    const QrDetection &code = codes.first();
    m_qrCodeFrameView->setGeometry(m_preview->mapFromFrame(code.bounds(), frameSize).translated(m_preview->pos()));
    if (code.text.isEmpty())
        return;
    setMessage(ItemsTexts::qrCodeDetected());
    found(code.text);
}

void QRScannerVC::scanFromPhoto()
{
    RavelinNavVC *host = navigationHost();
    if (!host || m_state == State::detected || m_state == State::handedOver)
        return;
    host->imagePicker()->pickImage(this, [self = QPointer<QRScannerVC>(this)](std::optional<QImage> picture) {
        if (self && picture && !picture->isNull())
            self->m_photoDecoder->submit(*picture);
    });
}

void QRScannerVC::photoRead(const QList<QrDetection> &codes)
{
    if (m_state == State::detected || m_state == State::handedOver)
        return;
    if (codes.isEmpty() || codes.first().text.isEmpty()) {
        Alert alert;
        alert.title = ItemsTexts::photoScanFailedTitle();
        alert.message = ItemsTexts::photoScanFailedMessage();
        alert.addAction(ItemsTexts::ok(), AlertActionStyle::cancel);
        AlertPresenter::present(this, std::move(alert));
        return;
    }
    setMessage(ItemsTexts::qrCodeDetected());
    found(codes.first().text);
}

void QRScannerVC::found(const QString &code)
{
    m_state = State::detected;
    if (m_frameSource)
        m_frameSource->stop();
    if (RavelinNavVC *host = navigationHost())
        host->hapticFeedback()->vibrate();
    QTimer::singleShot(delays().scannerHandOver, this, [this, code] {
        collapseOutline();
        removePreview();
        m_state = State::handedOver;
        // Closed first, so that whatever the delegate opens shows over the screen below.
        dismiss([delegate = m_delegate, code] {
            if (delegate)
                delegate->didScanCode(code);
        });
    });
}

void QRScannerVC::viewWillDisappear()
{
    Screen::viewWillDisappear();
    if (m_frameSource)
        m_frameSource->stop();
    if (m_state == State::running || m_state == State::configured)
        m_state = State::idle;
    collapseOutline();
    removePreview();
}

void QRScannerVC::collapseOutline()
{
    if (m_qrCodeFrameView)
        m_qrCodeFrameView->setGeometry(QRect());
}

void QRScannerVC::removePreview()
{
    if (!m_preview)
        return;
    m_preview->clear();
    m_preview->hide();
}

void QRScannerVC::resizeEvent(QResizeEvent *event)
{
    Screen::resizeEvent(event);
    layoutPanels();
}

void QRScannerVC::layoutPanels()
{
    if (!m_preview)
        return;
    m_preview->setGeometry(rect());
    QLayout *panel = m_instructionsView->layout();
    const int panelHeight
        = panel->hasHeightForWidth() ? panel->totalHeightForWidth(width()) : panel->totalSizeHint().height();
    m_instructionsView->setGeometry(0, height() - panelHeight, width(), panelHeight);
}

void QRScannerVC::setMessage(const QString &text)
{
    m_messageLabel->setText(text);
    m_messageLabel->show();
    layoutPanels();
}

} // namespace ravelin
