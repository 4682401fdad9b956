#pragma once

#include "tasks/task.h"

#include <QListView>
#include <QPersistentModelIndex>

namespace ravelin {

class TaskCollectionModel;
class TaskCollectionViewCell;

// One dashboard row: the tasks of one section as a horizontal strip of painted
// cards that scrolls sideways (kinetically, by finger or mouse). A list view on
// the row's own task model; only the cards in sight are painted.
//
// A tap on a card selects its task; a tap on an assigned card's acknowledge
// button is handed to the card painter instead. As on a phone, the first tap on
// a card partly hidden at the strip's ends or at the edge of the page around
// the strip only scrolls it into view. A drag is never a tap. A sideways wheel
// scrolls the strip; an upright one is left to the page. Enter or Space selects
// the current card from the keyboard.
class TaskTableViewCell : public QListView
{
    Q_OBJECT

public:
    static inline const QString reuseIdentifier = QStringLiteral("TaskTableViewCell");
    // A press that moves further than this is a drag, not a tap.
    static constexpr int tapSlop = 8;

    explicit TaskTableViewCell(QWidget *parent = nullptr);

    // The section this row shows.
    [[nodiscard]] int tag() const { return m_tag; }
    void setTag(int tag) { m_tag = tag; }

    // The card painter (shared by every strip of the dashboard).
    [[nodiscard]] TaskCollectionViewCell *cardPainter() const;
    void setCardPainter(TaskCollectionViewCell *painter);

    // The tasks the row shows, in order; setting them reloads the strip.
    [[nodiscard]] const QList<TaskPtr> &tasks() const;
    void setTasks(const QList<TaskPtr> &tasks);
    [[nodiscard]] int count() const;
    [[nodiscard]] TaskCollectionModel *collectionModel() const { return m_model; }
    // The card of the task at a position, in viewport coordinates.
    [[nodiscard]] QRect cardRect(int item) const;

    [[nodiscard]] QSize sizeHint() const override;

signals:
    // A card (not its button) was tapped: the section (tag) and the card's position.
    void taskSelected(int section, int item);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void setButtonPressed(const QModelIndex &index);
    // Whether a card is partly out of sight, and with `reveal` scrolls it into view.
    bool revealCard(const QModelIndex &index, bool reveal);

    TaskCollectionModel *m_model = nullptr;
    int m_tag = 0;
    QPersistentModelIndex m_pressIndex;
    QPoint m_pressPosition;
    bool m_pressOnButton = false;
    bool m_pressOnHiddenCard = false;
    bool m_pressing = false;
};

} // namespace ravelin
