#include "demo/server/demopictures.h"

#include <QBuffer>
#include <QColor>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <array>

namespace ravelin::demopictures {

namespace {

struct Palette
{
    QColor skyTop;
    QColor skyBottom;
    QColor farHills;
    QColor nearHills;
    QColor building;
    QColor roof;
    QColor pipe;
    QColor marker;
};

const std::array<Palette, 4> kPalettes{{
    {QColor(70, 130, 200), QColor(190, 220, 245), QColor(96, 140, 110), QColor(60, 120, 60), QColor(200, 190, 170),
     QColor(150, 60, 50), QColor(120, 120, 130), QColor(240, 180, 0)},
    {QColor(40, 60, 110), QColor(240, 160, 110), QColor(90, 90, 120), QColor(70, 90, 70), QColor(170, 170, 180),
     QColor(60, 70, 90), QColor(180, 90, 40), QColor(230, 60, 40)},
    {QColor(120, 150, 170), QColor(210, 215, 220), QColor(130, 140, 130), QColor(100, 110, 90), QColor(220, 220, 210),
     QColor(90, 100, 110), QColor(60, 90, 160), QColor(30, 170, 90)},
    {QColor(90, 170, 230), QColor(230, 240, 250), QColor(150, 170, 100), QColor(110, 150, 60), QColor(160, 110, 80),
     QColor(80, 50, 40), QColor(90, 90, 90), QColor(250, 120, 0)},
}};

} // namespace

QImage drawScene(int variant, QSize size)
{
    const Palette &palette = kPalettes.at(static_cast<size_t>(variant < 0 ? -variant : variant) % kPalettes.size());
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    // Draw on an 800x600 canvas whatever the size.
    painter.scale(size.width() / 800.0, size.height() / 600.0);

    QLinearGradient sky(0, 0, 0, 380);
    sky.setColorAt(0, palette.skyTop);
    sky.setColorAt(1, palette.skyBottom);
    painter.fillRect(QRectF(0, 0, 800, 600), sky);

    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 230, 120));
    painter.drawEllipse(QPointF(120 + 80 * (variant % 5), 90), 42, 42);

    QPainterPath far;
    far.moveTo(0, 360);
    far.cubicTo(160, 250, 320, 330, 460, 290);
    far.cubicTo(600, 250, 700, 300, 800, 280);
    far.lineTo(800, 600);
    far.lineTo(0, 600);
    painter.setBrush(palette.farHills);
    painter.drawPath(far);

    QPainterPath near;
    near.moveTo(0, 430);
    near.cubicTo(200, 380, 420, 460, 800, 400);
    near.lineTo(800, 600);
    near.lineTo(0, 600);
    painter.setBrush(palette.nearHills);
    painter.drawPath(near);

    // Pump house with a door and a window.
    const qreal houseX = 460 + 30 * (variant % 3);
    painter.setBrush(palette.building);
    painter.drawRect(QRectF(houseX, 300, 200, 140));
    QPolygonF roof;
    roof << QPointF(houseX - 15, 300) << QPointF(houseX + 100, 235) << QPointF(houseX + 215, 300);
    painter.setBrush(palette.roof);
    painter.drawPolygon(roof);
    painter.setBrush(palette.roof.darker(140));
    painter.drawRect(QRectF(houseX + 30, 360, 45, 80));
    painter.setBrush(QColor(180, 210, 230));
    painter.drawRect(QRectF(houseX + 115, 335, 55, 40));

    // Pipeline running into the house, with flanges.
    painter.setBrush(palette.pipe);
    painter.drawRect(QRectF(0, 455, houseX + 100, 24));
    painter.setBrush(palette.pipe.darker(130));
    for (int i = 0; i < 5; ++i)
        painter.drawRect(QRectF(60 + i * 90, 449, 12, 36));

    // Checkpoint marker post.
    const qreal postX = 220 + 40 * (variant % 4);
    painter.setBrush(QColor(70, 70, 70));
    painter.drawRect(QRectF(postX, 470, 10, 90));
    painter.setBrush(palette.marker);
    painter.drawRect(QRectF(postX - 20, 430, 50, 40));
    painter.setBrush(Qt::white);
    painter.drawRect(QRectF(postX - 10, 438, 30, 24));
    painter.end();
    return image;
}

QByteArray encodeJpeg(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "JPG", 85))
        return {};
    return bytes;
}

QImage thumbnailOf(const QImage &image)
{
    return image.scaled(kThumbnailSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

std::optional<QImage> decode(const QByteArray &bytes)
{
    QImage image;
    if (bytes.isEmpty() || !image.loadFromData(bytes) || image.isNull())
        return std::nullopt;
    return image;
}

} // namespace ravelin::demopictures
