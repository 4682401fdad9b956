#pragma once

#include "items/item.h"
#include "tasks/task.h"

#include <QAbstractListModel>
#include <QList>

namespace ravelin {

// The rows of a task's items screen: the task's `filteredItems`, in order, so
// that a row number is always a position in that list. The list is taken again
// with reload() (after a fetch or a change of the filter).
//
// An item reads (and is read out) as its name; UI automation finds it by its
// identifier, "itemCell_" + the item's id.
class ItemListModel : public QAbstractListModel
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
    };
    Q_ENUM(Role)

    explicit ItemListModel(QObject *parent = nullptr);

    [[nodiscard]] TaskPtr task() const { return m_task; }
    // Shows the task's filtered items; the views reset.
    void setTask(const TaskPtr &task);
    void reload();

    [[nodiscard]] const QList<ItemPtr> &items() const { return m_rows; }
    [[nodiscard]] ItemPtr item(int row) const { return m_rows.value(row); }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    TaskPtr m_task;
    QList<ItemPtr> m_rows;
};

} // namespace ravelin

Q_DECLARE_METATYPE(ravelin::ItemPtr)
