#include "items/taskitemsmodel.h"

#include "items/itemstexts.h"

#include <QHash>
#include <QSet>

namespace ravelin {

TaskItemsModel::TaskItemsModel(QObject *parent)
    : QAbstractListModel(parent)
{ }

void TaskItemsModel::setTask(const TaskPtr &task)
{
    beginResetModel();
    m_task = task;
    m_rows = task ? task->itemList.items : QList<ItemPtr>();
    endResetModel();
}

QList<int> TaskItemsModel::changedRoles(const Item &before, const Item &after)
{
    QList<int> roles;
    if (before.name != after.name)
        roles << Qt::DisplayRole << Qt::AccessibleTextRole;
    if (before.details != after.details)
        roles << DetailsRole;
    if (before.status != after.status)
        roles << StatusRole << StatusImageRole << HasSwipeActionsRole;
    if (before.qrCode != after.qrCode)
        roles << HasQRCodeRole;
    if (before.details != after.details || before.status != after.status || before.qrCode != after.qrCode)
        roles << Qt::AccessibleDescriptionRole;
    if (!roles.isEmpty() || before.isAudit != after.isAudit || before.dateCreated != after.dateCreated
        || before.dateUpdated != after.dateUpdated || before.taskId != after.taskId)
        roles << ItemRole;
    return roles;
}

void TaskItemsModel::update(const QList<ItemPtr> &items)
{
    QSet<qint64> wanted;
    wanted.reserve(items.size());
    for (const ItemPtr &item : items)
        wanted.insert(item->id);

    // Gone: removed from the bottom up, a run of rows at a time.
    for (qsizetype row = m_rows.size() - 1; row >= 0; --row) {
        if (wanted.contains(m_rows.at(row)->id))
            continue;
        qsizetype first = row;
        while (first > 0 && !wanted.contains(m_rows.at(first - 1)->id))
            --first;
        beginRemoveRows({}, int(first), int(row));
        m_rows.remove(first, row - first + 1);
        endRemoveRows();
        row = first;
    }

    QHash<qint64, qsizetype> shown;
    shown.reserve(m_rows.size());
    for (qsizetype row = 0; row < m_rows.size(); ++row)
        shown.insert(m_rows.at(row)->id, row);

    // Then in the answer's order: kept rows change in place (or move), new ones
    // are inserted a run at a time.
    for (qsizetype row = 0; row < items.size(); ++row) {
        const ItemPtr &item = items.at(row);
        if (!shown.contains(item->id)) {
            qsizetype last = row;
            while (last + 1 < items.size() && !shown.contains(items.at(last + 1)->id))
                ++last;
            beginInsertRows({}, int(row), int(last));
            QList tail = m_rows.mid(row);
            m_rows.resize(row);
            m_rows.append(items.mid(row, last - row + 1));
            m_rows.append(tail);
            endInsertRows();
            row = last;
            continue;
        }
        if (m_rows.at(row)->id != item->id) {
            // The server changed the order: the row moves up to its place.
            qsizetype from = row + 1;
            while (from < m_rows.size() && m_rows.at(from)->id != item->id)
                ++from;
            if (from == m_rows.size()) {
                // The same id twice in one answer: the second is a row of its own.
                beginInsertRows({}, int(row), int(row));
                m_rows.insert(row, item);
                endInsertRows();
                continue;
            }
            beginMoveRows({}, int(from), int(from), {}, int(row));
            m_rows.move(from, row);
            endMoveRows();
        }
        const QList<int> roles = changedRoles(*m_rows.at(row), *item);
        m_rows[row] = item;
        if (!roles.isEmpty())
            emit dataChanged(index(int(row)), index(int(row)), roles);
    }
}

int TaskItemsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant TaskItemsModel::data(const QModelIndex &index, int role) const
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
    case SyncMarkRole: return QVariant::fromValue(syncMark(item->id));
    default: return {};
    }
}

Qt::ItemFlags TaskItemsModel::flags(const QModelIndex &index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren : Qt::NoItemFlags;
}

void TaskItemsModel::setSyncMarks(const SyncMarks &marks)
{
    const QList<int> rows = PendingResults::changedRows(m_marks, marks, m_rows);
    m_marks = marks;
    for (const int row : rows) {
        const QModelIndex changed = index(row);
        emit dataChanged(changed, changed, {SyncMarkRole});
    }
}

QHash<int, QByteArray> TaskItemsModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    names.insert(ItemRole, "item");
    names.insert(IdentifierRole, "identifier");
    names.insert(DetailsRole, "details");
    names.insert(StatusRole, "status");
    names.insert(StatusImageRole, "statusImage");
    names.insert(HasQRCodeRole, "hasQRCode");
    names.insert(HasSwipeActionsRole, "hasSwipeActions");
    names.insert(SyncMarkRole, "syncMark");
    return names;
}

} // namespace ravelin
