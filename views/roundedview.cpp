#include "views/roundedview.h"

#include "resources/namedcolors.h"

#include <QEvent>
#include <QGraphicsDropShadowEffect>
#include <QPainter>
#include <QPainterPath>

namespace ravelin {

RoundedView::RoundedView(QWidget *parent)
    : QWidget(parent)
    , m_shadowColor(NamedColors::color(ColorNames::viewBackgroundReverted, QColor(Qt::white)))
{
    setAutoFillBackground(false);
    m_shadow = new QGraphicsDropShadowEffect(this);
    m_shadow->setObjectName(QStringLiteral("roundedShadow"));
    m_shadow->setOffset(0, 0);
    // The blur spreads over twice the shadow radius, which matches the soft edge
    // of a layer shadow of that radius.
    m_shadow->setBlurRadius(shadowRadius * 2.0);
    setGraphicsEffect(m_shadow);
    updateShadow();
}

void RoundedView::setCornerRadius(qreal radius)
{
    if (qFuzzyCompare(m_cornerRadius, radius))
        return;
    m_cornerRadius = radius;
    update();
    emit appearanceChanged();
}

void RoundedView::setShadowColor(const QColor &color)
{
    if (m_shadowColor == color)
        return;
    m_shadowColor = color;
    updateShadow();
    emit appearanceChanged();
}

void RoundedView::setBorderColor(const QColor &color)
{
    if (m_borderColor == color)
        return;
    m_borderColor = color;
    update();
    emit appearanceChanged();
}

void RoundedView::setBorderWidth(qreal width)
{
    if (qFuzzyCompare(m_borderWidth, width))
        return;
    m_borderWidth = width;
    update();
    emit appearanceChanged();
}

void RoundedView::setCustomBackgroundColor(const QColor &color)
{
    if (m_customBackgroundColor == color)
        return;
    m_customBackgroundColor = color;
    update();
    emit appearanceChanged();
}

QColor RoundedView::backgroundColor() const
{
    return autoFillBackground() ? palette().color(QPalette::Window) : QColor(Qt::transparent);
}

void RoundedView::setBackgroundColor(const QColor &color)
{
    clearOwnBackground();
    setCustomBackgroundColor(color);
}

RoundedBorder RoundedView::borderGeometry() const
{
    return ViewGeometry::roundedBorder(QRectF(rect()), m_cornerRadius, m_borderWidth);
}

void RoundedView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    QPainterPath fill;
    fill.addRoundedRect(QRectF(rect()), m_cornerRadius, m_cornerRadius);
    painter.fillPath(fill, m_customBackgroundColor);

    if (m_borderWidth > 0) {
        const RoundedBorder border = borderGeometry();
        QPen pen(m_borderColor, border.lineWidth);
        pen.setJoinStyle(Qt::RoundJoin);
        painter.setPen(pen);
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(border.rect, border.cornerRadius, border.cornerRadius);
    }
}

void RoundedView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::PaletteChange || m_clearingBackground || !testAttribute(Qt::WA_SetPalette))
        return;
    const QPalette current = palette();
    if (!current.isBrushSet(QPalette::Active, QPalette::Window))
        return;
    const QColor window = current.color(QPalette::Active, QPalette::Window);
    if (window.alpha() == 0)
        return;
    // A window colour set from outside becomes the card colour.
    setBackgroundColor(window);
}

void RoundedView::updateShadow()
{
    QColor color = m_shadowColor;
    color.setAlphaF(static_cast<float>(m_shadowColor.alphaF() * shadowOpacity));
    m_shadow->setColor(color);
}

void RoundedView::clearOwnBackground()
{
    m_clearingBackground = true;
    setAutoFillBackground(false);
    if (testAttribute(Qt::WA_SetPalette) && palette().color(QPalette::Window).alpha() != 0) {
        QPalette clear = palette();
        clear.setColor(QPalette::Window, Qt::transparent);
        setPalette(clear);
    }
    m_clearingBackground = false;
}

} // namespace ravelin
