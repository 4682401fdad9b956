#include "items/qrpreviewview.h"

#include "items/qrcodereader.h"

#include <QPainter>

namespace ravelin {

QrPreviewView::QrPreviewView(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void QrPreviewView::setFrame(const QImage &frame)
{
    m_frame = frame;
    update();
}

void QrPreviewView::clear()
{
    if (m_frame.isNull())
        return;
    m_frame = QImage();
    update();
}

QRect QrPreviewView::mapFromFrame(const QRectF &inFrame, const QSize &frameSize) const
{
    return QrCodeReader::aspectFill(inFrame, QSizeF(frameSize), QSizeF(size())).toAlignedRect();
}

void QrPreviewView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    if (m_frame.isNull())
        return;
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRectF target = QrCodeReader::aspectFill(QRectF(m_frame.rect()), QSizeF(m_frame.size()), QSizeF(size()));
    painter.drawImage(target, m_frame);
}

} // namespace ravelin
