#include "tasks/taskstrip.h"

#include "tasks/taskcard.h"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QScroller>
#include <QScrollerProperties>
#include <QVBoxLayout>

namespace ravelin {

TaskTableViewCell::TaskTableViewCell(QWidget *parent)
    : QWidget(parent)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);

    m_collectionView = new QScrollArea(this);
    m_collectionView->setObjectName(QStringLiteral("collectionView"));
    m_collectionView->setFrameShape(QFrame::NoFrame);
    m_collectionView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_collectionView->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_collectionView->setWidgetResizable(true);
    m_collectionView->setFixedHeight(TaskCollectionViewCell::cardHeight + 2 * TaskCollectionViewCell::shadowMargin);
    m_collectionView->viewport()->setAutoFillBackground(false);
    m_collectionView->setStyleSheet(QStringLiteral("QScrollArea { background: transparent; }"));

    m_strip = new QWidget;
    m_strip->setObjectName(QStringLiteral("strip"));
    m_stripLayout = new QHBoxLayout(m_strip);
    // The cards carry their own shadow margin; the first one lines up with the
    // section header's text.
    m_stripLayout->setContentsMargins(leadingInset - TaskCollectionViewCell::shadowMargin, 0,
                                      leadingInset - TaskCollectionViewCell::shadowMargin, 0);
    m_stripLayout->setSpacing(cardSpacing);
    m_stripLayout->addStretch(1);
    m_collectionView->setWidget(m_strip);
    // The scroll area paints what it holds; the strip lets the dashboard show through.
    m_strip->setAutoFillBackground(false);
    column->addWidget(m_collectionView);

    QScroller::grabGesture(m_collectionView->viewport(), QScroller::LeftMouseButtonGesture);
    QScroller *kinetic = QScroller::scroller(m_collectionView->viewport());
    QScrollerProperties properties = kinetic->scrollerProperties();
    properties.setScrollMetric(QScrollerProperties::VerticalOvershootPolicy,
                               QVariant::fromValue(QScrollerProperties::OvershootAlwaysOff));
    properties.setScrollMetric(QScrollerProperties::HorizontalOvershootPolicy,
                               QVariant::fromValue(QScrollerProperties::OvershootWhenScrollable));
    properties.setScrollMetric(QScrollerProperties::MousePressEventDelay, 0.0);
    kinetic->setScrollerProperties(properties);

    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void TaskTableViewCell::setTasks(const QList<TaskPtr> &tasks)
{
    m_tasks = tasks;
}

void TaskTableViewCell::reloadData(TaskCollectionViewCellDelegate *delegate)
{
    while (m_cells.size() > m_tasks.size()) {
        TaskCollectionViewCell *extra = m_cells.takeLast();
        m_stripLayout->removeWidget(extra);
        extra->hide();
        extra->deleteLater();
    }
    while (m_cells.size() < m_tasks.size()) {
        auto *cell = new TaskCollectionViewCell(m_strip);
        // Before the trailing stretch.
        m_stripLayout->insertWidget(static_cast<int>(m_cells.size()), cell);
        connect(cell, &TaskCollectionViewCell::tapped, this, [this, cell] {
            const qsizetype item = m_cells.indexOf(cell);
            if (item >= 0)
                emit taskSelected(m_tag, static_cast<int>(item));
        });
        m_cells.append(cell);
    }
    for (qsizetype item = 0; item < m_tasks.size(); ++item) {
        TaskCollectionViewCell *cell = m_cells.at(item);
        cell->setDelegate(delegate);
        cell->configure(m_tasks.at(item));
    }
}

} // namespace ravelin
