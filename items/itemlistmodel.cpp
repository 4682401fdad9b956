#include "items/itemlistmodel.h"

#include "items/itemstexts.h"

namespace ravelin {

ItemListModel::ItemListModel(QObject *parent)
    : QAbstractListModel(parent)
{ }

void ItemListModel::setTask(const TaskPtr &task)
{
    m_task = task;
    reload();
}

void ItemListModel::reload()
{
    beginResetModel();
    m_rows = m_task ? m_task->itemList.filteredItems() : QList<ItemPtr>();
    endResetModel();
}

int ItemListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant ItemListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const ItemPtr &item = m_rows.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole: return item->name;
    case ItemRole: return QVariant::fromValue(item);
    case IdentifierRole: return ItemsTexts::itemIdentifier(*item);
    case Qt::AccessibleDescriptionRole: return ItemsTexts::rowDescription(*item);
    case DetailsRole: return item->details;
    case StatusRole: return ItemStatuses::rawValue(item->status);
    case StatusImageRole: return ItemsTexts::statusImageName(item->status);
    case HasQRCodeRole: return item->qrCode.has_value();
    case HasSwipeActionsRole: return !ItemsTexts::swipeActions(*item).isEmpty();
    default: return {};
    }
}

Qt::ItemFlags ItemListModel::flags(const QModelIndex &index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren : Qt::NoItemFlags;
}

QHash<int, QByteArray> ItemListModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    names.insert(ItemRole, "item");
    names.insert(IdentifierRole, "identifier");
    names.insert(DetailsRole, "details");
    names.insert(StatusRole, "status");
    names.insert(StatusImageRole, "statusImage");
    names.insert(HasQRCodeRole, "hasQRCode");
    names.insert(HasSwipeActionsRole, "hasSwipeActions");
    return names;
}

} // namespace ravelin
