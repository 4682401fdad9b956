#include "views/textscale.h"

#include <QFontInfo>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>

namespace ravelin::TextScale {

qreal factor()
{
    const QFont font = QGuiApplication::font();
    // A font given in pixels has no point size: 4 pixels make 3 points.
    const qreal points = font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pixelSize() * 0.75;
    return std::max<qreal>(1.0, points / designPointSize);
}

int scaled(int designPixels)
{
    return int(std::lround(designPixels * factor()));
}

qreal scaled(qreal designPixels)
{
    return designPixels * factor();
}

QSize scaled(QSize designSize)
{
    return {scaled(designSize.width()), scaled(designSize.height())};
}

QFont font(const QFont &base, int designPixels, QFont::Weight weight)
{
    QFont out = base;
    out.setPixelSize(scaled(designPixels));
    out.setWeight(weight);
    return out;
}

QString styleSize(int designPixels)
{
    return QStringLiteral("font-size: %1px;").arg(scaled(designPixels));
}

} // namespace ravelin::TextScale
