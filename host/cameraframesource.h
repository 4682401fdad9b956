#pragma once

#include <QImage>
#include <QObject>

namespace ravelin {

// Where the QR scanner's pictures come from: the device's back camera by
// default; a host, a test or the demo may feed pictures of its own.
class CameraFrameSource : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Whether there is a camera (or picture feed) to start.
    [[nodiscard]] virtual bool isAvailable() const = 0;
    virtual void start() = 0;
    virtual void stop() = 0;
    [[nodiscard]] virtual bool isRunning() const = 0;

signals:
    // A new picture, on the main thread.
    void frameArrived(const QImage &frame);
    // The camera could not be opened or stopped delivering; the feed has stopped.
    void inputFailed(const QString &description);
};

} // namespace ravelin
