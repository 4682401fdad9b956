#pragma once

#include "tasks/task.h"

#include <QPointer>
#include <QWidget>

class QLabel;
class QPushButton;

namespace ravelin {

class PieChartView;
class RoundedView;
class TaskCollectionViewCellDelegate;

// One task on the dashboard: a rounded card with the task's name, category and
// priority, the small chart of its item progress, and for assigned tasks the
// button that acknowledges it. Tapping the card anywhere else selects the task.
class TaskCollectionViewCell : public QWidget
{
    Q_OBJECT

public:
    static inline const QString reuseIdentifier = QStringLiteral("TaskCollectionViewCell");
    static constexpr int cardWidth = 184;
    static constexpr int cardHeight = 164;
    // Room around the card for its shadow.
    static constexpr int shadowMargin = 6;
    // A press that moves further than this is a drag, not a tap.
    static constexpr int tapSlop = 8;

    explicit TaskCollectionViewCell(QWidget *parent = nullptr);

    // Shows the task: name, category, priority, item chart and (for assigned
    // tasks) the acknowledge button.
    void configure(const TaskPtr &task);

    [[nodiscard]] TaskPtr currentTask() const { return m_currentTask; }
    [[nodiscard]] TaskCollectionViewCellDelegate *delegate() const { return m_delegate; }
    void setDelegate(TaskCollectionViewCellDelegate *delegate) { m_delegate = delegate; }

    [[nodiscard]] RoundedView *viewCell() const { return m_viewCell; }
    [[nodiscard]] QLabel *taskName() const { return m_taskName; }
    [[nodiscard]] QLabel *categoryLbl() const { return m_categoryLbl; }
    [[nodiscard]] QLabel *priorityLbl() const { return m_priorityLbl; }
    [[nodiscard]] PieChartView *progressView() const { return m_progressView; }
    [[nodiscard]] QPushButton *acknowledgeBtn() const { return m_acknowledgeBtn; }

    // The acknowledge button's action: hands the task to the delegate; does
    // nothing without a task or a delegate.
    void didTapAcknowledge();

    [[nodiscard]] QSize sizeHint() const override;

signals:
    // The card (not its button) was tapped.
    void tapped();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void applyPriorityLook(TaskPriority priority);

    RoundedView *m_viewCell = nullptr;
    QLabel *m_taskName = nullptr;
    QLabel *m_categoryLbl = nullptr;
    QLabel *m_priorityLbl = nullptr;
    PieChartView *m_progressView = nullptr;
    QPushButton *m_acknowledgeBtn = nullptr;
    TaskPtr m_currentTask;
    TaskCollectionViewCellDelegate *m_delegate = nullptr;
    QPoint m_pressPosition;
    bool m_pressed = false;
};

} // namespace ravelin
