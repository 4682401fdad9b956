#pragma once

#include <QColor>
#include <QFont>
#include <QList>
#include <QString>
#include <QStringList>
#include <QWidget>

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

// The framework's charts: a donut of task statuses for the dashboard, a
// progress ring, and the donut of item statuses with the total progress in the
// middle. Drawn on a clear background.
class PieChartView : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool legendVisible READ legendVisible WRITE setLegendVisible NOTIFY chartChanged)

public:
    enum class Kind { empty, taskStatus, taskProgress, itemsProgress };
    Q_ENUM(Kind)

    // The gap between two slices, in pixels along the ring's middle line.
    static constexpr qreal sliceGap = 2.5;
    static constexpr int chartFontSize = 9;
    static inline const QString chartFontFamily = QStringLiteral("HelveticaNeue-Light");

    explicit PieChartView(QWidget *parent = nullptr);

    // One slice per value with the names and colours of the same position; the
    // title is the centre text.
    void updateChartForTaskStatus(const QStringList &names, const QList<int> &values, const QList<QColor> &colors,
                                  const QString &title);
    // A ring filled to the percentage (0 to 100), the percentage and the title
    // in the centre.
    void updateChartTaskProgress(int percentage, const QString &title);
    // Slices per item status with the total progress in the centre. The items
    // screen's chart (isItemsChart) labels its slices; the small chart of a task
    // card does not.
    void updateChartForItemsProgress(const QStringList &names, const QList<int> &values, const QList<QColor> &colors,
                                     int totalProgress, bool isItemsChart);

    [[nodiscard]] Kind kind() const { return m_kind; }
    [[nodiscard]] const QList<ChartSlice> &slices() const { return m_slices; }
    [[nodiscard]] QString centerText() const { return m_centerText; }
    [[nodiscard]] int percentage() const { return m_percentage; }
    [[nodiscard]] bool slicesLabelled() const { return m_labelSlices; }

    [[nodiscard]] bool legendVisible() const { return m_legendVisible; }
    void setLegendVisible(bool visible);

    // "HelveticaNeue-Light" at size 9, falling back to the closest light
    // sans-serif face when that font is not installed.
    [[nodiscard]] static QFont chartFont();

    // Angles of the slices of the positive values (zero and negative values get
    // none), clockwise from twelve o'clock, each shortened by the gap (in
    // degrees) and centred in its share. A single slice fills the circle.
    [[nodiscard]] static QList<SliceAngles> sliceAngles(const QList<qreal> &values, qreal gapDegrees = 0);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

signals:
    void chartChanged();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void setSlices(const QStringList &names, const QList<int> &values, const QList<QColor> &colors);
    [[nodiscard]] QRectF chartRect() const;
    [[nodiscard]] bool hasRoomForLegend() const;
    void paintSlices(QPainter &painter, const QRectF &outer, qreal thickness) const;
    void paintProgress(QPainter &painter, const QRectF &outer, qreal thickness) const;
    void paintTrack(QPainter &painter, const QRectF &outer, qreal thickness) const;
    void paintCenter(QPainter &painter, const QRectF &outer) const;
    void paintLegend(QPainter &painter, const QRectF &area) const;

    Kind m_kind = Kind::empty;
    QList<ChartSlice> m_slices;
    QString m_centerText;
    QString m_title;
    int m_percentage = 0;
    bool m_labelSlices = false;
    bool m_legendVisible = false;
};

} // namespace ravelin
