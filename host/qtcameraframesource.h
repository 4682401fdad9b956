#pragma once

#include "host/cameraframesource.h"

#include <QCameraDevice>

#include <memory>

class QCamera;
class QMediaCaptureSession;
class QVideoSink;

namespace ravelin {

// The device's camera through Qt Multimedia: the back camera where there is
// one, else the default camera; frames come from a video sink.
class QtCameraFrameSource : public CameraFrameSource
{
    Q_OBJECT

public:
    explicit QtCameraFrameSource(QObject *parent = nullptr);
    ~QtCameraFrameSource() override;

    // The camera a scanner uses: the first facing back, else the default one;
    // a null device when there is none.
    [[nodiscard]] static QCameraDevice backCamera();

    [[nodiscard]] bool isAvailable() const override;
    void start() override;
    void stop() override;
    [[nodiscard]] bool isRunning() const override;

private:
    QCameraDevice m_device;
    std::unique_ptr<QMediaCaptureSession> m_session;
    std::unique_ptr<QCamera> m_camera;
    std::unique_ptr<QVideoSink> m_sink;
};

} // namespace ravelin
