#pragma once

#include "tasks/task.h"

#include <QList>
#include <QWidget>

class QHBoxLayout;
class QScrollArea;

namespace ravelin {

class TaskCollectionViewCell;
class TaskCollectionViewCellDelegate;

// One dashboard row: the tasks of one status as a horizontal strip of cards that
// scrolls sideways (kinetically, by finger or mouse).
class TaskTableViewCell : public QWidget
{
    Q_OBJECT

public:
    static inline const QString reuseIdentifier = QStringLiteral("TaskTableViewCell");
    // Left inset of the first card, lined up with the section header.
    static constexpr int leadingInset = 10;
    static constexpr int cardSpacing = 4;

    explicit TaskTableViewCell(QWidget *parent = nullptr);

    [[nodiscard]] const QList<TaskPtr> &tasks() const { return m_tasks; }
    void setTasks(const QList<TaskPtr> &tasks);

    // The section this row shows.
    [[nodiscard]] int tag() const { return m_tag; }
    void setTag(int tag) { m_tag = tag; }

    // The sideways scrolling strip.
    [[nodiscard]] QScrollArea *collectionView() const { return m_collectionView; }

    // Shows one card per task, configured with its task and given the delegate;
    // cards already made are reused.
    void reloadData(TaskCollectionViewCellDelegate *delegate);
    [[nodiscard]] const QList<TaskCollectionViewCell *> &cells() const { return m_cells; }

signals:
    // A card was tapped: the section (tag) and the card's position in it.
    void taskSelected(int section, int item);

private:
    QList<TaskPtr> m_tasks;
    int m_tag = 0;
    QScrollArea *m_collectionView = nullptr;
    QWidget *m_strip = nullptr;
    QHBoxLayout *m_stripLayout = nullptr;
    QList<TaskCollectionViewCell *> m_cells;
};

} // namespace ravelin
