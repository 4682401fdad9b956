#pragma once

#include <QImage>
#include <QList>
#include <QPoint>
#include <QString>

namespace ravelin {

// QR code pictures for the demo's camera and the tests: black modules on
// white, with the standard quiet zone of four modules.
class QrSymbol
{
public:
    // The code of the text, each module `modulePixels` wide; a null picture
    // when the text cannot be encoded.
    [[nodiscard]] static QImage image(const QString &text, int modulePixels = 8);

    // A code stuck on a wall: its text and where its top left corner is.
    struct Sticker
    {
        QString text;
        QPoint at;
    };
    // A camera picture of a plain grey wall with the given codes on it.
    [[nodiscard]] static QImage scene(const QSize &size, const QList<Sticker> &stickers, int modulePixels = 6);
};

} // namespace ravelin
