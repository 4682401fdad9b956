#include "items/qrframedecoder.h"

#include <QPointer>

namespace ravelin {

QrFrameDecoder::QrFrameDecoder(QObject *parent)
    : QObject(parent)
{ }

QrFrameDecoder::~QrFrameDecoder()
{
    m_queue.waitForDone();
}

bool QrFrameDecoder::submit(const QImage &frame)
{
    bool idle = false;
    if (!m_busy->compare_exchange_strong(idle, true)) {
        ++m_dropped;
        return false;
    }
    const QPointer<QrFrameDecoder> self(this);
    m_queue.async([self, busy = m_busy, frame] {
        const QList<QrDetection> codes = QrCodeReader::read(frame);
        const QSize size = frame.size();
        ApiQueue::deliverToMainThread([self, busy, codes, size] {
            busy->store(false);
            if (self)
                emit self->decoded(codes, size);
        });
    });
    return true;
}

} // namespace ravelin
