#pragma once

#include "tasks/chartpainter.h"

#include <QWidget>

namespace ravelin {

// The framework's chart widget: a donut of task statuses for the dashboard, a
// progress ring, and the donut of item statuses with the total progress in the
// middle. Drawn by ChartPainter on a clear background. Assistive technology
// sees a chart named by its text alternative (Chart::textAlternative()).
class PieChartView : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool legendVisible READ legendVisible WRITE setLegendVisible NOTIFY chartChanged)

public:
    using Kind = Chart::Kind;

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

    [[nodiscard]] const Chart &chart() const { return m_chart; }
    [[nodiscard]] Kind kind() const { return m_chart.kind; }
    [[nodiscard]] const QList<ChartSlice> &slices() const { return m_chart.slices; }
    [[nodiscard]] QString centerText() const { return m_chart.centerText; }
    [[nodiscard]] int percentage() const { return m_chart.percentage; }
    [[nodiscard]] bool slicesLabelled() const { return m_chart.labelSlices; }

    [[nodiscard]] bool legendVisible() const { return m_chart.legend; }
    void setLegendVisible(bool visible);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

signals:
    void chartChanged();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void display(Chart chart);

    Chart m_chart;
};

} // namespace ravelin
