#include "demo/app/hostbrand.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

#include <array>

namespace ravelin::hostbrand {

QColor primary()
{
    return QColor(0x0F, 0x76, 0x6E);
}
QColor primaryDark()
{
    return QColor(0x0B, 0x4F, 0x4A);
}
QColor accent()
{
    return QColor(0xF5, 0x9E, 0x0B);
}
QColor surface()
{
    return QColor(0xFF, 0xFF, 0xFF);
}
QColor background()
{
    return QColor(0xF0, 0xF5, 0xF4);
}
QColor text()
{
    return QColor(0x13, 0x2A, 0x28);
}
QColor secondaryText()
{
    return QColor(0x5B, 0x6E, 0x6C);
}
QColor hairline()
{
    return QColor(0xD5, 0xE1, 0xDF);
}
QColor danger()
{
    return QColor(0xDC, 0x26, 0x26);
}

QFont font(int pixelSize, QFont::Weight weight)
{
    QFont f = QApplication::font();
    f.setPixelSize(pixelSize);
    f.setWeight(weight);
    return f;
}

void drawLogo(QPainter &painter, const QRectF &rect, const QColor &background, const QColor &foreground)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(background);
    const qreal radius = rect.width() * 0.26;
    painter.drawRoundedRect(rect, radius, radius);

    // A ravelin seen from above: an arrowhead-shaped outwork with a narrow gorge.
    const qreal w = rect.width();
    const auto at = [&rect, w](qreal x, qreal y) { return QPointF(rect.left() + x * w, rect.top() + y * w); };
    const QPolygonF outwork{at(0.50, 0.17), at(0.84, 0.58), at(0.64, 0.80), at(0.36, 0.80), at(0.16, 0.58)};
    painter.setBrush(foreground);
    painter.drawPolygon(outwork);
    // The ditch inside it, in the background colour.
    const QPolygonF ditch{at(0.50, 0.42), at(0.65, 0.61), at(0.57, 0.70), at(0.43, 0.70), at(0.35, 0.61)};
    painter.setBrush(background);
    painter.drawPolygon(ditch);
    painter.restore();
}

QString initials(const QString &name)
{
    QString out;
    const QStringList words = name.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &word : words) {
        if (out.size() == 2)
            break;
        if (word.front().isLetterOrNumber())
            out += word.front().toUpper();
    }
    return out.isEmpty() ? QStringLiteral("?") : out;
}

QPixmap avatar(const QString &name, int size, qreal devicePixelRatio)
{
    static const std::array<QColor, 6> palette{QColor(0x0E, 0x74, 0x90), QColor(0x7C, 0x3A, 0xED),
                                               QColor(0xDB, 0x27, 0x77), QColor(0xEA, 0x58, 0x0C),
                                               QColor(0x05, 0x96, 0x69), QColor(0x25, 0x63, 0xEB)};
    uint hash = 0;
    for (const QChar ch : name)
        hash = hash * 31 + ch.unicode();

    QPixmap pixmap(QSize(size, size) * devicePixelRatio);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.at(hash % palette.size()));
    painter.drawEllipse(QRectF(0, 0, size, size));
    painter.setPen(Qt::white);
    painter.setFont(font(qRound(size * 0.38), QFont::DemiBold));
    painter.drawText(QRectF(0, 0, size, size), Qt::AlignCenter, initials(name));
    return pixmap;
}

} // namespace ravelin::hostbrand
