#pragma once

#include <QImage>
#include <QList>
#include <QPolygonF>
#include <QRectF>
#include <QString>

namespace ravelin {

// A QR code found in a picture: its text (possibly empty) and where it is, in
// the picture's pixels.
struct QrDetection
{
    QString text;
    QPolygonF corners;

    [[nodiscard]] QRectF bounds() const { return corners.boundingRect(); }
    friend bool operator==(const QrDetection &, const QrDetection &) = default;
};

// Finds QR codes in pictures (and nothing else: other kinds of barcode are not
// looked for). Safe to call from any thread.
class QrCodeReader
{
public:
    // Every QR code in the picture, in the order the reader meets them.
    [[nodiscard]] static QList<QrDetection> read(const QImage &picture);

    // Where a rectangle of a picture shows when the picture fills a view of
    // another shape (scaled to cover the view, centred, the rest cut off).
    [[nodiscard]] static QRectF aspectFill(const QRectF &inPicture, const QSizeF &picture, const QSizeF &view);
};

} // namespace ravelin
