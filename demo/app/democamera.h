#pragma once

#include "host/cameraframesource.h"

#include <QElapsedTimer>
#include <QImage>
#include <QTimer>

#include <functional>

namespace ravelin {

class RavelinNavVC;

// The demo's camera: a landscape picture of a wall with a checkpoint's QR
// sticker on it, held by a slightly unsteady hand, a dozen frames a second.
// Which checkpoint is asked when the camera starts; with none, the wall is bare.
class DemoCamera : public CameraFrameSource
{
    Q_OBJECT

public:
    using CheckpointProvider = std::function<QString()>;
    static constexpr QSize frameSize{1280, 720};

    explicit DemoCamera(CheckpointProvider checkpoint, QObject *parent = nullptr);

    // The code of the first open item with one in the task whose items screen
    // is open in the host; empty when there is none.
    [[nodiscard]] static QString openCheckpoint(const RavelinNavVC *navVC);
    // The picture the camera shows at a moment of its run.
    [[nodiscard]] static QImage frame(const QImage &sticker, qint64 elapsedMs);

    [[nodiscard]] bool isAvailable() const override { return true; }
    void start() override;
    void stop() override;
    [[nodiscard]] bool isRunning() const override { return m_timer.isActive(); }

private:
    CheckpointProvider m_checkpoint;
    QImage m_sticker;
    QTimer m_timer;
    QElapsedTimer m_clock;
};

} // namespace ravelin
