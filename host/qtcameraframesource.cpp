#include "host/qtcameraframesource.h"

#include <QCamera>
#include <QMediaCaptureSession>
#include <QMediaDevices>
#include <QVideoFrame>
#include <QVideoSink>

namespace ravelin {

QtCameraFrameSource::QtCameraFrameSource(QObject *parent)
    : CameraFrameSource(parent)
    , m_device(backCamera())
{ }

QtCameraFrameSource::~QtCameraFrameSource()
{
    stop();
}

QCameraDevice QtCameraFrameSource::backCamera()
{
    const QList<QCameraDevice> cameras = QMediaDevices::videoInputs();
    for (const QCameraDevice &camera : cameras) {
        if (camera.position() == QCameraDevice::BackFace)
            return camera;
    }
    return {};
}

bool QtCameraFrameSource::isAvailable() const
{
    return !m_device.isNull();
}

void QtCameraFrameSource::start()
{
    if (!isAvailable() || isRunning())
        return;
    if (!m_session) {
        m_session = std::make_unique<QMediaCaptureSession>();
        m_camera = std::make_unique<QCamera>(m_device);
        m_sink = std::make_unique<QVideoSink>();
        m_session->setCamera(m_camera.get());
        m_session->setVideoSink(m_sink.get());
        connect(m_camera.get(), &QCamera::errorOccurred, this, [this](QCamera::Error error, const QString &text) {
            if (error == QCamera::NoError)
                return;
            m_camera->stop();
            emit inputFailed(text.isEmpty() ? QStringLiteral("camera error %1").arg(int(error)) : text);
        });
        connect(m_sink.get(), &QVideoSink::videoFrameChanged, this, [this](const QVideoFrame &frame) {
            if (isRunning() && frame.isValid())
                emit frameArrived(frame.toImage());
        });
    }
    m_camera->start();
}

void QtCameraFrameSource::stop()
{
    if (m_camera)
        m_camera->stop();
}

bool QtCameraFrameSource::isRunning() const
{
    return m_camera && m_camera->isActive();
}

} // namespace ravelin
