#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QString>

class QPainter;
class QWidget;

namespace ravelin {

// One soft shadow: colour, offset, opacity and blur radius.
struct ShadowStyle
{
    QColor color;
    QPointF offset;
    qreal opacity = 1.0;
    qreal radius = 0;

    friend bool operator==(const ShadowStyle &, const ShadowStyle &) = default;
};

// The shadows of the framework's cards and round author icons. A shadow is a
// layer widget named after its role ("darkShadow", "lightShadow",
// "imageShadow") placed right under the view in the view's parent, following the
// view's geometry; applying a shadow again replaces the earlier layers of the
// same view, so repeated layout never stacks them.
class CardShadow
{
public:
    static inline const QString darkShadowName = QStringLiteral("darkShadow");
    static inline const QString lightShadowName = QStringLiteral("lightShadow");
    static inline const QString imageShadowName = QStringLiteral("imageShadow");

    // The two-layer card look: a "darkShadow" layer that also paints the card in
    // its colour (light gray, offset (1, 1), opacity 0.3, radius 1) and below it
    // a "lightShadow" layer (the colour "CustomShadow", offset (-1, -1),
    // opacity 1, radius 1). The view itself stays clear. A view without a
    // parent gets no layers.
    static void applyCardShadow(QWidget *view, qreal cornerRadius, const QColor &color);

    // The shadow of round author icons: offset (2, 2), radius 2, opacity 0.5,
    // shaped as the view's bounds rounded by the corner radius.
    static void applyImageShadow(QWidget *view, qreal cornerRadius, const QColor &shadowColor);

    // Removes every shadow layer of the view.
    static void removeShadows(QWidget *view);

    [[nodiscard]] static ShadowStyle darkShadowStyle();
    [[nodiscard]] static ShadowStyle lightShadowStyle();
    [[nodiscard]] static ShadowStyle imageShadowStyle(const QColor &color);

    // How far a shadow reaches beyond its shape on each side.
    [[nodiscard]] static qreal reach(const ShadowStyle &style);

    // Paints the blurred shadow of a rounded rectangle.
    static void paintShadow(QPainter &painter, const QRectF &shape, qreal cornerRadius, const ShadowStyle &style);

    // Paints the whole card (both shadows and the fill) into the given frame, for
    // item delegates that draw cards without widgets.
    static void paintCard(QPainter &painter, const QRectF &frame, qreal cornerRadius, const QColor &color);
};

} // namespace ravelin
