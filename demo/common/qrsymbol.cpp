#include "demo/common/qrsymbol.h"

#include <QPainter>

#include <memory>
#include <qrencode.h>

namespace ravelin {

QImage QrSymbol::image(const QString &text, int modulePixels)
{
    constexpr int quietModules = 4;
    const QByteArray utf8 = text.toUtf8();
    const std::unique_ptr<QRcode, decltype(&QRcode_free)> code(
        QRcode_encodeString8bit(utf8.constData(), 0, QR_ECLEVEL_M), &QRcode_free);
    if (!code || modulePixels < 1)
        return {};
    const int modules = code->width + 2 * quietModules;
    QImage picture(modules * modulePixels, modules * modulePixels, QImage::Format_Grayscale8);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    for (int y = 0; y < code->width; ++y) {
        for (int x = 0; x < code->width; ++x) {
            // Bit 0 of each byte is the module's colour (1 is dark).
            if (code->data[y * code->width + x] & 1)
                painter.fillRect((x + quietModules) * modulePixels, (y + quietModules) * modulePixels, modulePixels,
                                 modulePixels, Qt::black);
        }
    }
    return picture;
}

QImage QrSymbol::scene(const QSize &size, const QList<Sticker> &stickers, int modulePixels)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(QColor(128, 128, 128));
    QPainter painter(&picture);
    for (const Sticker &sticker : stickers)
        painter.drawImage(sticker.at, image(sticker.text, modulePixels));
    return picture;
}

} // namespace ravelin
