#include "views/viewgeometry.h"

#include <algorithm>
#include <cmath>

namespace ravelin {

RoundedBorder ViewGeometry::roundedBorder(const QRectF &bounds, qreal cornerRadius, qreal borderWidth)
{
    const qreal half = borderWidth / 2.0;
    RoundedBorder border;
    border.rect = bounds.adjusted(half, half, -half, -half);
    border.cornerRadius = std::max<qreal>(0.0, cornerRadius - half);
    border.lineWidth = borderWidth;
    return border;
}

QRectF ViewGeometry::cellFrame(const QRectF &given)
{
    return given.adjusted(cellGap, cellGap, -cellGap, -cellGap);
}

QRect ViewGeometry::cellFrame(const QRect &given)
{
    const int gap = static_cast<int>(std::lround(cellGap));
    return given.adjusted(gap, gap, -gap, -gap);
}

qreal ViewGeometry::fittedCellHeight(qreal laidOutHeight, qreal minHeight)
{
    return std::max(laidOutHeight, minHeight);
}

} // namespace ravelin
