#pragma once

#include <QColor>
#include <QFont>
#include <QList>
#include <QRectF>
#include <QString>
#include <QStringList>

class QPainter;

namespace ravelin {

// One slice of a chart.
struct ChartSlice
{
    QString name;
    int value = 0;
    QColor color;

    friend bool operator==(const ChartSlice &, const ChartSlice &) = default;
};

// Where a slice is drawn, in QPainter degrees (0 at three o'clock,
// counter-clockwise positive); spans are negative because slices run clockwise
// from twelve o'clock.
struct SliceAngles
{
    qsizetype index = 0;
    qreal startAngle = 0;
    qreal spanAngle = 0;
    // Middle of the slice, for its label.
    qreal midAngle = 0;

    friend bool operator==(const SliceAngles &, const SliceAngles &) = default;
};

// What a chart shows: a donut of task statuses, a progress ring, or the donut
// of item statuses with the total progress in the middle.
struct Chart
{
    enum class Kind { empty, taskStatus, taskProgress, itemsProgress };

    Kind kind = Kind::empty;
    QList<ChartSlice> slices;
    QString centerText;
    int percentage = 0;
    // The items screen's chart writes each slice's value on it.
    bool labelSlices = false;
    // A legend of names and values beside the donut, where there is room.
    bool legend = false;

    // One slice per value with the names and colours of the same position; the
    // title is the centre text.
    [[nodiscard]] static Chart taskStatus(const QStringList &names, const QList<int> &values,
                                          const QList<QColor> &colors, const QString &title);
    // A ring filled to the percentage (clamped to 0..100), the percentage and
    // the title in the centre.
    [[nodiscard]] static Chart taskProgress(int percentage, const QString &title);
    // Slices per item status with the total progress in the centre.
    [[nodiscard]] static Chart itemsProgress(const QStringList &names, const QList<int> &values,
                                             const QList<QColor> &colors, int totalProgress, bool isItemsChart);

    // What the chart says to someone who cannot see it: the value of every
    // slice that has one ("Assigned: 2, In Progress: 2"; every slice when all
    // are empty), a progress ring's percentage ("40% done"), and for the items
    // chart the percentage first ("50% done. Completed: 2, Open: 2").
    [[nodiscard]] QString textAlternative() const;

    friend bool operator==(const Chart &, const Chart &) = default;
};

// The one drawing of the library's charts, used by the chart widget and by the
// painted task cards alike. Drawn on a clear background.
namespace ChartPainter {

// The gap between two slices, in pixels along the ring's middle line.
inline constexpr qreal sliceGap = 2.5;
inline constexpr int fontSize = 9;
inline const QString fontFamily = QStringLiteral("HelveticaNeue-Light");

// "HelveticaNeue-Light" at size 9 (larger with the worker's larger text),
// falling back to the closest light sans-serif face when that font is not
// installed.
[[nodiscard]] QFont font();

// Angles of the slices of the positive values (zero and negative values get
// none), clockwise from twelve o'clock, each shortened by the gap (in degrees)
// and centred in its share. A single slice fills the circle.
[[nodiscard]] QList<SliceAngles> sliceAngles(const QList<qreal> &values, qreal gapDegrees = 0);

// Where the donut goes inside the bounds (with a legend it keeps to the left).
[[nodiscard]] QRectF chartRect(const QRectF &bounds, const Chart &chart);

// Draws the chart into the bounds.
void paint(QPainter &painter, const QRectF &bounds, const Chart &chart);

} // namespace ChartPainter

} // namespace ravelin
