#pragma once

#include "host/cameraframesource.h"

#include <QCameraDevice>

#include <memory>

class QCamera;
class QMediaCaptureSession;
class QVideoSink;

namespace ravelin {

// The device's back camera through Qt Multimedia, frames from a video sink.
// Without a camera facing back there is nothing to start: a front or external
// camera is never taken in its place.
class QtCameraFrameSource : public CameraFrameSource
{
    Q_OBJECT

public:
    explicit QtCameraFrameSource(QObject *parent = nullptr);
    ~QtCameraFrameSource() override;

    // The camera a scanner uses: the first facing back; a null device when
    // there is none.
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
