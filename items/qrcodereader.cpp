#include "items/qrcodereader.h"

#define ZX_USE_UTF8
#include <ZXing/ReadBarcode.h>

#include <QSysInfo>

#include <algorithm>

namespace ravelin {

QList<QrDetection> QrCodeReader::read(const QImage &picture)
{
    QList<QrDetection> found;
    if (picture.isNull())
        return found;
    // The reader works on brightness alone; it takes the camera's 32-bit and
    // 24-bit pictures as they are (a copy to grey would cost as much as the
    // reading), anything else is made grey first.
    QImage source = picture;
    ZXing::ImageFormat format = ZXing::ImageFormat::Lum;
    switch (picture.format()) {
    case QImage::Format_Grayscale8: break;
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
    case QImage::Format_ARGB32_Premultiplied:
        format = QSysInfo::ByteOrder == QSysInfo::LittleEndian ? ZXing::ImageFormat::BGRX : ZXing::ImageFormat::XRGB;
        break;
    case QImage::Format_RGB888: format = ZXing::ImageFormat::RGB; break;
    default: source = picture.convertToFormat(QImage::Format_Grayscale8); break;
    }
    const ZXing::ImageView view(source.constBits(), source.width(), source.height(), format,
                                int(source.bytesPerLine()));
    ZXing::DecodeHints hints;
    hints.setFormats(ZXing::BarcodeFormat::QRCode);
    hints.setTryHarder(true);
    hints.setTryRotate(true);
    for (const ZXing::Result &result : ZXing::ReadBarcodes(view, hints)) {
        if (!result.isValid() || result.format() != ZXing::BarcodeFormat::QRCode)
            continue;
        QPolygonF corners;
        for (const ZXing::PointI &point : result.position())
            corners.append(QPointF(point.x, point.y));
        const std::string text = result.text();
        found.append(QrDetection{QString::fromUtf8(text.data(), qsizetype(text.size())), corners});
    }
    return found;
}

QRectF QrCodeReader::aspectFill(const QRectF &inPicture, const QSizeF &picture, const QSizeF &view)
{
    if (picture.isEmpty() || view.isEmpty())
        return {};
    const qreal scale = std::max(view.width() / picture.width(), view.height() / picture.height());
    const QPointF offset((view.width() - picture.width() * scale) / 2, (view.height() - picture.height() * scale) / 2);
    return {inPicture.left() * scale + offset.x(), inPicture.top() * scale + offset.y(), inPicture.width() * scale,
            inPicture.height() * scale};
}

} // namespace ravelin
