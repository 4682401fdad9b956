#include "tasks/piechartview.h"

#include "resources/namedcolors.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QtMath>

#include <algorithm>
#include <numeric>

namespace ravelin {

namespace {

constexpr qreal padding = 4.0;
// Below this span a slice is too narrow to carry its value.
constexpr qreal minimumLabelledSpan = 18.0;
constexpr qreal legendGap = 20.0;
constexpr qreal minimumLegendWidth = 96.0;

QColor labelColor()
{
    return NamedColors::color(ColorNames::labelText, QColor(0x1F, 0x29, 0x37));
}

QColor trackColor()
{
    QColor color = NamedColors::color(ColorNames::customGray, QColor(Qt::gray));
    color.setAlphaF(0.22f);
    return color;
}

QPointF pointOnCircle(const QPointF &center, qreal radius, qreal degrees)
{
    const qreal radians = qDegreesToRadians(degrees);
    // QPainter angles run counter-clockwise while y grows downwards.
    return {center.x() + radius * std::cos(radians), center.y() - radius * std::sin(radians)};
}

} // namespace

PieChartView::PieChartView(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setAutoFillBackground(false);
    setFont(chartFont());
}

void PieChartView::updateChartForTaskStatus(const QStringList &names, const QList<int> &values,
                                            const QList<QColor> &colors, const QString &title)
{
    setSlices(names, values, colors);
    m_kind = Kind::taskStatus;
    m_title = title;
    m_centerText = title;
    m_percentage = 0;
    m_labelSlices = true;
    update();
    emit chartChanged();
}

void PieChartView::updateChartTaskProgress(int percentage, const QString &title)
{
    m_slices.clear();
    m_kind = Kind::taskProgress;
    m_percentage = std::clamp(percentage, 0, 100);
    m_title = title;
    m_centerText = title.isEmpty() ? QStringLiteral("%1%").arg(m_percentage)
                                   : QStringLiteral("%1%\n%2").arg(m_percentage).arg(title);
    m_labelSlices = false;
    update();
    emit chartChanged();
}

void PieChartView::updateChartForItemsProgress(const QStringList &names, const QList<int> &values,
                                               const QList<QColor> &colors, int totalProgress, bool isItemsChart)
{
    setSlices(names, values, colors);
    m_kind = Kind::itemsProgress;
    m_percentage = std::clamp(totalProgress, 0, 100);
    m_title.clear();
    m_centerText = QStringLiteral("%1%").arg(m_percentage);
    m_labelSlices = isItemsChart;
    update();
    emit chartChanged();
}

void PieChartView::setLegendVisible(bool visible)
{
    if (m_legendVisible == visible)
        return;
    m_legendVisible = visible;
    update();
    emit chartChanged();
}

QFont PieChartView::chartFont()
{
    QFont font;
    font.setFamilies({chartFontFamily, QStringLiteral("Helvetica Neue"), QStringLiteral("Roboto"),
                      QStringLiteral("Segoe UI"), QStringLiteral("DejaVu Sans"), QStringLiteral("Sans Serif")});
    font.setWeight(QFont::Light);
    font.setPointSize(chartFontSize);
    font.setStyleHint(QFont::SansSerif);
    return font;
}

QList<SliceAngles> PieChartView::sliceAngles(const QList<qreal> &values, qreal gapDegrees)
{
    QList<SliceAngles> angles;
    qreal total = 0;
    int positive = 0;
    for (const qreal value : values) {
        if (value > 0) {
            total += value;
            ++positive;
        }
    }
    if (total <= 0)
        return angles;

    const qreal gap = positive > 1 ? std::max<qreal>(gapDegrees, 0) : 0;
    qreal swept = 0;
    for (qsizetype index = 0; index < values.size(); ++index) {
        const qreal value = values.at(index);
        if (value <= 0)
            continue;
        const qreal share = 360.0 * value / total;
        SliceAngles slice;
        slice.index = index;
        slice.startAngle = 90.0 - swept - std::min(gap, share) / 2.0;
        slice.spanAngle = -std::max<qreal>(share - gap, 0);
        slice.midAngle = 90.0 - swept - share / 2.0;
        angles.append(slice);
        swept += share;
    }
    return angles;
}

QSize PieChartView::sizeHint() const
{
    return m_legendVisible ? QSize(300, 160) : QSize(160, 160);
}

QSize PieChartView::minimumSizeHint() const
{
    return {40, 40};
}

void PieChartView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(chartFont());

    const QRectF outer = chartRect();
    if (outer.width() < 8)
        return;
    const qreal side = outer.width();

    switch (m_kind) {
    case Kind::empty:
        paintTrack(painter, outer, side * 0.14);
        break;
    case Kind::taskStatus:
        paintSlices(painter, outer, side * 0.2);
        break;
    case Kind::taskProgress:
        paintProgress(painter, outer, side * 0.12);
        break;
    case Kind::itemsProgress:
        paintSlices(painter, outer, side * (m_labelSlices ? 0.2 : 0.16));
        break;
    }
    paintCenter(painter, outer);

    if (hasRoomForLegend()) {
        const QRectF area(outer.right() + legendGap, padding, width() - outer.right() - legendGap - padding,
                          height() - 2 * padding);
        paintLegend(painter, area);
    }
}

void PieChartView::setSlices(const QStringList &names, const QList<int> &values, const QList<QColor> &colors)
{
    m_slices.clear();
    const QColor fallback = NamedColors::color(ColorNames::customGray, QColor(Qt::gray));
    for (qsizetype index = 0; index < values.size(); ++index)
        m_slices.append({names.value(index), values.at(index), colors.value(index, fallback)});
}

QRectF PieChartView::chartRect() const
{
    const qreal w = width();
    const qreal h = height();
    if (hasRoomForLegend()) {
        const qreal side = std::min(h, w * 0.5) - 2 * padding;
        return {padding + legendGap / 2.0, (h - side) / 2.0, side, side};
    }
    const qreal side = std::min(w, h) - 2 * padding;
    return {(w - side) / 2.0, (h - side) / 2.0, side, side};
}

bool PieChartView::hasRoomForLegend() const
{
    if (!m_legendVisible || m_slices.isEmpty())
        return false;
    const qreal side = std::min<qreal>(height(), width() * 0.5);
    return width() - side - legendGap >= minimumLegendWidth;
}

void PieChartView::paintTrack(QPainter &painter, const QRectF &outer, qreal thickness) const
{
    const qreal inset = thickness / 2.0;
    painter.setPen(QPen(trackColor(), thickness));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(outer.adjusted(inset, inset, -inset, -inset));
}

void PieChartView::paintSlices(QPainter &painter, const QRectF &outer, qreal thickness) const
{
    QList<qreal> values;
    for (const ChartSlice &slice : m_slices)
        values.append(slice.value);

    const qreal middleRadius = outer.width() / 2.0 - thickness / 2.0;
    const qreal gapDegrees = middleRadius > 0 ? qRadiansToDegrees(sliceGap / middleRadius) : 0;
    const QList<SliceAngles> angles = sliceAngles(values, gapDegrees);
    if (angles.isEmpty()) {
        paintTrack(painter, outer, thickness);
        return;
    }

    const QRectF inner = outer.adjusted(thickness, thickness, -thickness, -thickness);
    painter.setPen(Qt::NoPen);
    for (const SliceAngles &angle : angles) {
        QPainterPath path;
        path.arcMoveTo(outer, angle.startAngle);
        path.arcTo(outer, angle.startAngle, angle.spanAngle);
        path.arcTo(inner, angle.startAngle + angle.spanAngle, -angle.spanAngle);
        path.closeSubpath();
        painter.setBrush(m_slices.at(angle.index).color);
        painter.drawPath(path);
    }

    if (!m_labelSlices)
        return;
    painter.setPen(Qt::white);
    const QFontMetricsF metrics(painter.font());
    for (const SliceAngles &angle : angles) {
        if (-angle.spanAngle < minimumLabelledSpan)
            continue;
        const QString text = QString::number(m_slices.at(angle.index).value);
        const QPointF centre = pointOnCircle(outer.center(), middleRadius, angle.midAngle);
        const qreal textWidth = metrics.horizontalAdvance(text);
        if (textWidth > thickness * 1.4)
            continue;
        const QRectF box(centre.x() - textWidth / 2.0 - 2, centre.y() - metrics.height() / 2.0, textWidth + 4,
                         metrics.height());
        painter.drawText(box, Qt::AlignCenter, text);
    }
}

void PieChartView::paintProgress(QPainter &painter, const QRectF &outer, qreal thickness) const
{
    paintTrack(painter, outer, thickness);
    if (m_percentage <= 0)
        return;
    const qreal inset = thickness / 2.0;
    const QRectF ring = outer.adjusted(inset, inset, -inset, -inset);
    QPen pen(NamedColors::color(ColorNames::customGreen, QColor(Qt::green)), thickness);
    pen.setCapStyle(m_percentage >= 100 ? Qt::FlatCap : Qt::RoundCap);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    QPainterPath arc;
    arc.arcMoveTo(ring, 90);
    arc.arcTo(ring, 90, -360.0 * m_percentage / 100.0);
    painter.drawPath(arc);
}

void PieChartView::paintCenter(QPainter &painter, const QRectF &outer) const
{
    if (m_centerText.isEmpty())
        return;
    const qreal hole = outer.width() * 0.6;
    const QRectF box(outer.center().x() - hole / 2.0, outer.center().y() - hole / 2.0, hole, hole);
    painter.setPen(labelColor());
    painter.drawText(box, Qt::AlignCenter | Qt::TextWordWrap, m_centerText);
}

void PieChartView::paintLegend(QPainter &painter, const QRectF &area) const
{
    const QFontMetricsF metrics(painter.font());
    const qreal rowHeight = metrics.height() + 7;
    qsizetype rows = 0;
    for (const ChartSlice &slice : m_slices)
        rows += slice.name.isEmpty() ? 0 : 1;
    qreal y = area.top() + std::max<qreal>(0, (area.height() - rows * rowHeight) / 2.0);
    const qreal dot = 8;
    qreal valueWidth = 0;
    for (const ChartSlice &slice : m_slices)
        valueWidth = std::max(valueWidth, metrics.horizontalAdvance(QString::number(slice.value)));
    for (const ChartSlice &slice : m_slices) {
        if (slice.name.isEmpty())
            continue;
        if (y + rowHeight > area.bottom() + 1)
            break;
        painter.setPen(Qt::NoPen);
        painter.setBrush(slice.color);
        painter.drawEllipse(QRectF(area.left(), y + (rowHeight - dot) / 2.0, dot, dot));
        painter.setPen(labelColor());
        const QRectF text(area.left() + dot + 8, y, area.width() - dot - 8, rowHeight);
        painter.drawText(text, Qt::AlignVCenter | Qt::AlignLeft,
                         metrics.elidedText(slice.name, Qt::ElideRight, text.width() - valueWidth - 6));
        painter.drawText(text, Qt::AlignVCenter | Qt::AlignRight, QString::number(slice.value));
        y += rowHeight;
    }
}

} // namespace ravelin
