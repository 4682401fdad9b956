#include "items/qrframedecoder.h"

#include <QCoreApplication>
#include <QPointer>

namespace ravelin {

QrFrameDecoder::QrFrameDecoder(QObject *parent)
    : QObject(parent)
{
    m_pool.setMaxThreadCount(1);
    m_pool.setObjectName(QStringLiteral("qr.decoder"));
}

QrFrameDecoder::~QrFrameDecoder()
{
    m_pool.waitForDone();
}

bool QrFrameDecoder::submit(const QImage &frame)
{
    bool idle = false;
    if (!m_busy->compare_exchange_strong(idle, true)) {
        ++m_dropped;
        return false;
    }
    const QPointer<QrFrameDecoder> self(this);
    m_pool.start([self, busy = m_busy, frame] {
        const QList<QrDetection> codes = QrCodeReader::read(frame);
        const QSize size = frame.size();
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, busy, codes, size] {
                busy->store(false);
                if (self)
                    emit self->decoded(codes, size);
            },
            Qt::QueuedConnection);
    });
    return true;
}

} // namespace ravelin
