#pragma once

#include <QRect>
#include <QRectF>

namespace ravelin {

// The stroke of a rounded card's border: where it runs and how round it is.
struct RoundedBorder
{
    QRectF rect;
    qreal cornerRadius = 0;
    qreal lineWidth = 0;

    friend bool operator==(const RoundedBorder &, const RoundedBorder &) = default;
};

// Geometry rules of the styled views, free of any widget so that they can be
// checked on their own.
class ViewGeometry
{
public:
    // The gap kept free around every shadow card on each side.
    static constexpr qreal cellGap = 2.0;
    static constexpr qreal defaultCellMinHeight = 100.0;
    static constexpr qreal defaultCellCornerRadius = 10.0;

    // The border runs on the bounds inset by half its width, so that the whole
    // line lies inside; its corner radius shrinks by the same half width (never
    // below zero).
    [[nodiscard]] static RoundedBorder roundedBorder(const QRectF &bounds, qreal cornerRadius, qreal borderWidth);

    // The frame a shadow card takes inside the space it is given.
    [[nodiscard]] static QRectF cellFrame(const QRectF &given);
    [[nodiscard]] static QRect cellFrame(const QRect &given);

    // A shadow card is never lower than its minimum height.
    [[nodiscard]] static qreal fittedCellHeight(qreal laidOutHeight, qreal minHeight);
};

} // namespace ravelin
