#pragma once

#include "host/guardeddelegate.h"
#include "host/screen.h"
#include "items/qrcodereader.h"
#include "items/qrscannerdelegate.h"

#include <QPointer>

#include <memory>
#include <utility>

class QFrame;
class QLabel;
class QPushButton;

namespace ravelin {

class CameraFrameSource;
class QrFrameDecoder;
class QrPreviewView;

// The camera screen that reads the QR code of a checkpoint: asks for camera
// permission, shows the back camera's picture, outlines the QR code in view,
// and on the first code read vibrates once and, after the hand-over delay (a
// second), closes and hands the text to its delegate. Without a back camera,
// or when the camera fails, it says so in the log and stays without a picture;
// a code can then be read from a picked photo instead.
class QRScannerVC : public Screen
{
    Q_OBJECT

public:
    // idle (before permission) -> configured -> running -> detected (feed
    // stopped) -> handedOver.
    enum class State { idle, configured, running, detected, handedOver };
    Q_ENUM(State)

    explicit QRScannerVC(QWidget *parent = nullptr);
    ~QRScannerVC() override;

    [[nodiscard]] QRScannerDelegate *delegate() const { return m_delegate.get(); }
    void setDelegate(QRScannerDelegate *delegate) { m_delegate = delegate; }

    void viewDidLoad() override;
    void viewWillDisappear() override;

    // Picks a photo and reads a QR code from it.
    void scanFromPhoto();

    [[nodiscard]] State state() const { return m_state; }
    // The permission alert's title and message.
    [[nodiscard]] static std::pair<QString, QString> cameraAccessDenied();

    // The views, for the tests and the tour.
    [[nodiscard]] QrPreviewView *videoPreviewLayer() const { return m_preview; }
    [[nodiscard]] QFrame *qrCodeFrameView() const { return m_qrCodeFrameView; }
    [[nodiscard]] QWidget *instructionsView() const { return m_instructionsView; }
    [[nodiscard]] QLabel *messageLabel() const { return m_messageLabel; }
    [[nodiscard]] QPushButton *scanFromPhotoButton() const { return m_photoButton; }
    [[nodiscard]] CameraFrameSource *frameSource() const { return m_frameSource.get(); }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void buildViews();
    void askPermissionThenStart();
    void presentPermissionAlert();
    // Takes the camera; false (and a debug line) when there is none.
    bool configure();
    void startRunning();
    void frameArrived(const QImage &frame);
    void inputFailed(const QString &description);
    void metadataOutput(const QList<QrDetection> &codes, const QSize &frameSize);
    void photoRead(const QList<QrDetection> &codes);
    void found(const QString &code);
    void collapseOutline();
    void removePreview();
    void layoutPanels();
    void setMessage(const QString &text);

    GuardedDelegate<QRScannerDelegate> m_delegate;
    State m_state = State::idle;
    std::unique_ptr<CameraFrameSource> m_frameSource;
    QrFrameDecoder *m_decoder = nullptr;
    QrFrameDecoder *m_photoDecoder = nullptr;

    QrPreviewView *m_preview = nullptr;
    QFrame *m_qrCodeFrameView = nullptr;
    QWidget *m_instructionsView = nullptr;
    QLabel *m_messageLabel = nullptr;
    QPushButton *m_photoButton = nullptr;
};

} // namespace ravelin
