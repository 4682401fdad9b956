#pragma once

#include "api/pendingresults.h"
#include "items/item.h"
#include "tasks/task.h"

#include <QAbstractListModel>
#include <QList>

namespace ravelin {

// Every item of one task, in server order, as the rows of a list. A new answer
// is taken row by row: items are matched by id, so that an item whose texts,
// status or code changed is a dataChanged on its row with the roles that
// changed, a new item an inserted row and a vanished one a removed row. Only
// another task resets the rows. An item that reads the same as before takes
// its row's place without a signal.
//
// An item reads (and is read out) as its name; UI automation finds it by its
// identifier, "itemCell_" + the item's id.
class TaskItemsModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        // The shared Item (ravelin::ItemPtr).
        ItemRole = Qt::UserRole + 1,
        IdentifierRole,
        // The item's details.
        DetailsRole,
        // The status text ("Open").
        StatusRole,
        // The name of the status image ("ok", "nok" or "open").
        StatusImageRole,
        // Whether the item carries a QR code.
        HasQRCodeRole,
        // Whether the row offers its swipe actions (open items only).
        HasSwipeActionsRole,
        // How the row's result stands with the server (SyncMark).
        SyncMarkRole,
    };
    Q_ENUM(Role)

    explicit TaskItemsModel(QObject *parent = nullptr);

    [[nodiscard]] TaskPtr task() const { return m_task; }
    // Shows another task's items; the views reset.
    void setTask(const TaskPtr &task);
    // Takes the items of an answer, compared with the rows by id.
    void update(const QList<ItemPtr> &items);

    [[nodiscard]] const QList<ItemPtr> &items() const { return m_rows; }
    [[nodiscard]] ItemPtr item(int row) const { return m_rows.value(row); }

    // The roles whose values differ between two versions of an item.
    [[nodiscard]] static QList<int> changedRoles(const Item &before, const Item &after);

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
    TaskPtr m_task;
    QList<ItemPtr> m_rows;
};

} // namespace ravelin

Q_DECLARE_METATYPE(ravelin::ItemPtr)
