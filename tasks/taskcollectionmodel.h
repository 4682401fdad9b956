#pragma once

#include "api/pendingresults.h"
#include "tasks/task.h"

#include <QAbstractListModel>
#include <QList>

namespace ravelin {

// The tasks of one dashboard section as a list model: what one row's strip of
// cards shows. A card reads as its task's name, and a screen reader hears its
// status, priority, category and progress as its description. UI automation
// finds a card by its identifier, "task_" + its status's case name
// ("task_in_progress"), in IdentifierRole (Qt 6.4 has no accessible
// identifier of its own for the items of a list).
class TaskCollectionModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        // The shared Task (ravelin::TaskPtr).
        TaskRole = Qt::UserRole + 1,
        // "task_in_progress": how automation finds the card.
        IdentifierRole,
        // The status text ("In Progress").
        StatusRole,
        // The category name.
        CategoryRole,
        // The priority text ("High").
        PriorityRole,
        // The progress in percent (0 to 100).
        ProgressRole,
        // Whether the card offers the acknowledge button.
        ShowsAcknowledgeRole,
        // How the row's result stands with the server (SyncMark).
        SyncMarkRole,
    };
    Q_ENUM(Role)

    explicit TaskCollectionModel(QObject *parent = nullptr);

    // Shows other tasks; the views reset. The list is shared, not copied.
    void setTasks(const QList<TaskPtr> &tasks);
    [[nodiscard]] const QList<TaskPtr> &tasks() const { return m_tasks; }
    // The task of a row; nothing outside the list.
    [[nodiscard]] TaskPtr task(int row) const { return m_tasks.value(row); }

    // The marks of results still in the outbox, by id; rows whose mark
    // changes get dataChanged with SyncMarkRole.
    void setSyncMarks(const SyncMarks &marks);
    [[nodiscard]] SyncMark syncMark(qint64 id) const { return m_marks.value(id, SyncMark::none); }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    SyncMarks m_marks;
    QList<TaskPtr> m_tasks;
};

} // namespace ravelin
