#pragma once

#include "api/apiqueue.h"
#include "items/qrcodereader.h"

#include <QImage>
#include <QObject>

#include <atomic>
#include <memory>

namespace ravelin {

// Looks for QR codes in a stream of camera frames, off the main thread. One
// frame is decoded at a time: a frame that arrives while another is being
// decoded is dropped, never queued, so a slow reader falls behind by skipping
// frames, not by piling them up. Results come back on the main thread.
class QrFrameDecoder : public QObject
{
    Q_OBJECT

public:
    explicit QrFrameDecoder(QObject *parent = nullptr);
    ~QrFrameDecoder() override;

    // Decodes the frame unless one is in flight (then it is dropped); true when taken.
    bool submit(const QImage &frame);
    [[nodiscard]] bool isBusy() const { return m_busy->load(); }
    [[nodiscard]] int dropped() const { return m_dropped; }

signals:
    // The codes of a frame (none when there was none), and the frame's size.
    void decoded(const QList<ravelin::QrDetection> &codes, const QSize &frameSize);

private:
    // One thread of its own; its hand-overs are visible to ThreadSanitizer.
    ApiQueue m_queue{QStringLiteral("qr.decoder")};
    // Shared with the decoding thread, which may outlive a decoder going away.
    std::shared_ptr<std::atomic<bool>> m_busy = std::make_shared<std::atomic<bool>>(false);
    int m_dropped = 0;
};

} // namespace ravelin
