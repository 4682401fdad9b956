#include "tasks/chartpainter.h"

#include "resources/namedcolors.h"
#include "views/textscale.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QtMath>

#include <algorithm>

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

namespace {

QList<ChartSlice> makeSlices(const QStringList &names, const QList<int> &values, const QList<QColor> &colors)
{
    QList<ChartSlice> slices;
    const QColor fallback = NamedColors::color(ColorNames::customGray, QColor(Qt::gray));
    for (qsizetype index = 0; index < values.size(); ++index)
        slices.append({names.value(index), values.at(index), colors.value(index, fallback)});
    return slices;
}

bool hasRoomForLegend(const QRectF &bounds, const Chart &chart)
{
    if (!chart.legend || chart.slices.isEmpty())
        return false;
    const qreal side = std::min<qreal>(bounds.height(), bounds.width() * 0.5);
    return bounds.width() - side - legendGap >= minimumLegendWidth;
}

// The width the legend takes without cutting a name short: dot, gap, the
// longest name, gap, the widest value.
qreal legendWidth(const Chart &chart)
{
    const QFontMetricsF metrics(ChartPainter::font());
    qreal names = 0;
    qreal values = 0;
    for (const ChartSlice &slice : chart.slices) {
        names = std::max(names, metrics.horizontalAdvance(slice.name));
        values = std::max(values, metrics.horizontalAdvance(QString::number(slice.value)));
    }
    return 8 + 8 + names + 6 + values + 1;
}

void paintTrack(QPainter &painter, const QRectF &outer, qreal thickness)
{
    const qreal inset = thickness / 2.0;
    painter.setPen(QPen(trackColor(), thickness));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(outer.adjusted(inset, inset, -inset, -inset));
}

void paintSlices(QPainter &painter, const QRectF &outer, qreal thickness, const Chart &chart)
{
    QList<qreal> values;
    for (const ChartSlice &slice : chart.slices)
        values.append(slice.value);

    const qreal middleRadius = outer.width() / 2.0 - thickness / 2.0;
    const qreal gapDegrees = middleRadius > 0 ? qRadiansToDegrees(ChartPainter::sliceGap / middleRadius) : 0;
    const QList<SliceAngles> angles = ChartPainter::sliceAngles(values, gapDegrees);
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
        painter.setBrush(chart.slices.at(angle.index).color);
        painter.drawPath(path);
    }

    if (!chart.labelSlices)
        return;
    painter.setPen(Qt::white);
    const QFontMetricsF metrics(painter.font());
    for (const SliceAngles &angle : angles) {
        if (-angle.spanAngle < minimumLabelledSpan)
            continue;
        const QString text = QString::number(chart.slices.at(angle.index).value);
        const QPointF centre = pointOnCircle(outer.center(), middleRadius, angle.midAngle);
        const qreal textWidth = metrics.horizontalAdvance(text);
        if (textWidth > thickness * 1.4)
            continue;
        const QRectF box(centre.x() - textWidth / 2.0 - 2, centre.y() - metrics.height() / 2.0, textWidth + 4,
                         metrics.height());
        painter.drawText(box, Qt::AlignCenter, text);
    }
}

void paintProgress(QPainter &painter, const QRectF &outer, qreal thickness, int percentage)
{
    paintTrack(painter, outer, thickness);
    if (percentage <= 0)
        return;
    const qreal inset = thickness / 2.0;
    const QRectF ring = outer.adjusted(inset, inset, -inset, -inset);
    QPen pen(NamedColors::color(ColorNames::customGreen, QColor(Qt::green)), thickness);
    pen.setCapStyle(percentage >= 100 ? Qt::FlatCap : Qt::RoundCap);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    QPainterPath arc;
    arc.arcMoveTo(ring, 90);
    arc.arcTo(ring, 90, -360.0 * percentage / 100.0);
    painter.drawPath(arc);
}

void paintCenter(QPainter &painter, const QRectF &outer, const QString &text)
{
    if (text.isEmpty())
        return;
    const qreal hole = outer.width() * 0.6;
    const QRectF box(outer.center().x() - hole / 2.0, outer.center().y() - hole / 2.0, hole, hole);
    painter.setPen(labelColor());
    painter.drawText(box, Qt::AlignCenter | Qt::TextWordWrap, text);
}

void paintLegend(QPainter &painter, const QRectF &area, const QList<ChartSlice> &slices)
{
    const QFontMetricsF metrics(painter.font());
    const qreal rowHeight = metrics.height() + 7;
    qsizetype rows = 0;
    for (const ChartSlice &slice : slices)
        rows += slice.name.isEmpty() ? 0 : 1;
    qreal y = area.top() + std::max<qreal>(0, (area.height() - qreal(rows) * rowHeight) / 2.0);
    const qreal dot = 8;
    qreal valueWidth = 0;
    for (const ChartSlice &slice : slices)
        valueWidth = std::max(valueWidth, metrics.horizontalAdvance(QString::number(slice.value)));
    for (const ChartSlice &slice : slices) {
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

} // namespace

Chart Chart::taskStatus(const QStringList &names, const QList<int> &values, const QList<QColor> &colors,
                        const QString &title)
{
    Chart chart;
    chart.kind = Kind::taskStatus;
    chart.slices = makeSlices(names, values, colors);
    chart.centerText = title;
    chart.labelSlices = true;
    return chart;
}

Chart Chart::taskProgress(int percentage, const QString &title)
{
    Chart chart;
    chart.kind = Kind::taskProgress;
    chart.percentage = std::clamp(percentage, 0, 100);
    chart.centerText = title.isEmpty() ? QStringLiteral("%1%").arg(chart.percentage)
                                       : QStringLiteral("%1%\n%2").arg(chart.percentage).arg(title);
    return chart;
}

Chart Chart::itemsProgress(const QStringList &names, const QList<int> &values, const QList<QColor> &colors,
                           int totalProgress, bool isItemsChart)
{
    Chart chart;
    chart.kind = Kind::itemsProgress;
    chart.slices = makeSlices(names, values, colors);
    chart.percentage = std::clamp(totalProgress, 0, 100);
    chart.centerText = QStringLiteral("%1%").arg(chart.percentage);
    chart.labelSlices = isItemsChart;
    return chart;
}

QString Chart::textAlternative() const
{
    QStringList counts;
    for (const ChartSlice &slice : slices) {
        if (slice.value > 0)
            counts.append(QStringLiteral("%1: %2").arg(slice.name).arg(slice.value));
    }
    if (counts.isEmpty()) {
        for (const ChartSlice &slice : slices)
            counts.append(QStringLiteral("%1: %2").arg(slice.name).arg(slice.value));
    }
    QString done = QCoreApplication::translate("Chart", "%1% done").arg(percentage);
    switch (kind) {
    case Kind::empty: break;
    case Kind::taskStatus: return counts.join(QStringLiteral(", "));
    case Kind::taskProgress: return done;
    case Kind::itemsProgress:
        return counts.isEmpty() ? done : done + QStringLiteral(". ") + counts.join(QStringLiteral(", "));
    }
    return {};
}

namespace ChartPainter {

QFont font()
{
    QFont font;
    font.setFamilies({fontFamily, QStringLiteral("Helvetica Neue"), QStringLiteral("Roboto"),
                      QStringLiteral("Segoe UI"), QStringLiteral("DejaVu Sans"), QStringLiteral("Sans Serif")});
    font.setWeight(QFont::Light);
    font.setPointSizeF(TextScale::scaled(qreal(fontSize)));
    font.setStyleHint(QFont::SansSerif);
    return font;
}

QList<SliceAngles> sliceAngles(const QList<qreal> &values, qreal gapDegrees)
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

QRectF chartRect(const QRectF &bounds, const Chart &chart)
{
    const qreal w = bounds.width();
    const qreal h = bounds.height();
    if (hasRoomForLegend(bounds, chart)) {
        // The donut gives up some room (down to a third of the width) before
        // the legend's names are cut short, as they would be with large text.
        const qreal room = std::max(w / 3.0, w - legendWidth(chart) - 1.5 * legendGap);
        const qreal side = std::min({h, w * 0.5, room}) - 2 * padding;
        return {bounds.left() + padding + legendGap / 2.0, bounds.top() + (h - side) / 2.0, side, side};
    }
    const qreal side = std::min(w, h) - 2 * padding;
    return {bounds.left() + (w - side) / 2.0, bounds.top() + (h - side) / 2.0, side, side};
}

void paint(QPainter &painter, const QRectF &bounds, const Chart &chart)
{
    const QRectF outer = chartRect(bounds, chart);
    if (outer.width() < 8)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(font());
    const qreal side = outer.width();
    switch (chart.kind) {
    case Chart::Kind::empty: paintTrack(painter, outer, side * 0.14); break;
    case Chart::Kind::taskStatus: paintSlices(painter, outer, side * 0.2, chart); break;
    case Chart::Kind::taskProgress: paintProgress(painter, outer, side * 0.12, chart.percentage); break;
    case Chart::Kind::itemsProgress: paintSlices(painter, outer, side * (chart.labelSlices ? 0.2 : 0.16), chart); break;
    }
    paintCenter(painter, outer, chart.centerText);
    if (hasRoomForLegend(bounds, chart)) {
        const QRectF area(outer.right() + legendGap, bounds.top() + padding,
                          bounds.right() - outer.right() - legendGap - padding, bounds.height() - 2 * padding);
        paintLegend(painter, area, chart.slices);
    }
    painter.restore();
}

} // namespace ChartPainter

} // namespace ravelin
