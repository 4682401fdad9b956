#include "tasks/piechartview.h"

#include "views/accessiblefactory.h"

#include <QPainter>

namespace ravelin {

PieChartView::PieChartView(QWidget *parent)
    : QWidget(parent)
{
    AccessibleFactory::describe(staticMetaObject, QAccessible::Chart);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setAutoFillBackground(false);
    setFont(ChartPainter::font());
}

void PieChartView::updateChartForTaskStatus(const QStringList &names, const QList<int> &values,
                                            const QList<QColor> &colors, const QString &title)
{
    display(Chart::taskStatus(names, values, colors, title));
}

void PieChartView::updateChartTaskProgress(int percentage, const QString &title)
{
    display(Chart::taskProgress(percentage, title));
}

void PieChartView::updateChartForItemsProgress(const QStringList &names, const QList<int> &values,
                                               const QList<QColor> &colors, int totalProgress, bool isItemsChart)
{
    display(Chart::itemsProgress(names, values, colors, totalProgress, isItemsChart));
}

void PieChartView::display(Chart chart)
{
    chart.legend = m_chart.legend;
    m_chart = std::move(chart);
    // Read out instead of seen: the counts (or the percentage) as the name, the
    // title in the middle as the description.
    setAccessibleName(m_chart.textAlternative());
    setAccessibleDescription(m_chart.kind == Kind::taskStatus ? m_chart.centerText : QString());
    update();
    emit chartChanged();
}

void PieChartView::setLegendVisible(bool visible)
{
    if (m_chart.legend == visible)
        return;
    m_chart.legend = visible;
    update();
    emit chartChanged();
}

QSize PieChartView::sizeHint() const
{
    return m_chart.legend ? QSize(300, 160) : QSize(160, 160);
}

QSize PieChartView::minimumSizeHint() const
{
    return {40, 40};
}

void PieChartView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    ChartPainter::paint(painter, rect(), m_chart);
}

} // namespace ravelin
