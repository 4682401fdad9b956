#pragma once

#include "demo/app/hostsetup.h"

#include <QList>
#include <QWidget>

#include <optional>

class QButtonGroup;
class QComboBox;
class QPushButton;

namespace ravelin {

// The host's sheet for posting a task update event: pick a task and what
// happened to it, then "Post event". It rises from the bottom of the window over
// a dimmed background; a tap on the dimmed part or "Cancel" closes it.
class TaskEventSheet : public QWidget
{
    Q_OBJECT

public:
    explicit TaskEventSheet(QWidget *window);

    void setTasks(const QList<HostSetup::TaskChoice> &tasks);
    [[nodiscard]] const QList<HostSetup::TaskChoice> &tasks() const { return m_tasks; }

    bool selectTask(qint64 taskId);
    [[nodiscard]] std::optional<HostSetup::TaskChoice> selectedTask() const;
    // One of the three kinds ("task-assigned", ...).
    bool selectKind(const QString &kind);
    [[nodiscard]] QString selectedKind() const;

    void open();
    void dismiss();
    [[nodiscard]] bool isOpen() const { return isVisible(); }

    [[nodiscard]] QComboBox *taskBox() const { return m_taskBox; }
    [[nodiscard]] QPushButton *postButton() const { return m_post; }

signals:
    void postRequested(qint64 taskId, const QString &taskName, const QString &kind);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void layoutSheet();
    void post();

    QWidget *m_sheet = nullptr;
    QComboBox *m_taskBox = nullptr;
    QButtonGroup *m_kinds = nullptr;
    QPushButton *m_post = nullptr;
    QList<HostSetup::TaskChoice> m_tasks;
};

} // namespace ravelin
