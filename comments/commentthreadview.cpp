#include "comments/commentthreadview.h"

#include "comments/commenttableviewcell.h"
#include "comments/commentthreadmodel.h"
#include "views/textscale.h"

#include <QKeyEvent>
#include <QMouseEvent>

namespace ravelin {

CommentThreadView::CommentThreadView(QWidget *parent)
    : VirtualListView(parent)
{
    setObjectName(QStringLiteral("commentsTableView"));
    setAccessibleName(tr("Comments"));
    setSelectionMode(QAbstractItemView::NoSelection);
    m_painter = new CommentTableViewCell(this);
    setItemDelegate(m_painter);
    // A comment with a line of text and no picture; a picture's arrival never
    // changes a height.
    setEstimatedRowHeight(TextScale::scaled(CommentTableViewCell::minHeight + 20));
    setPaintOnlyRoles({CommentThreadModel::ThumbnailRole, CommentThreadModel::PictureFailedRole});
}

void CommentThreadView::setThreadModel(CommentThreadModel *model)
{
    m_model = model;
    setModel(model);
    // Pictures are loaded for the rows in sight and one screen ahead.
    connect(this, &VirtualListView::rowsInSightChanged, model, &CommentThreadModel::setRowsInSight);
}

QRect CommentThreadView::pictureRect(int row) const
{
    if (!m_model || row < 0 || row >= m_model->rowCount())
        return {};
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const QModelIndex index = m_model->index(row);
    option.rect = visualRect(index);
    if (m_model->index(row).data(CommentThreadModel::KindRole).value<CommentThreadModel::RowKind>()
        != CommentThreadModel::RowKind::comment)
        return {};
    return CommentTableViewCell::layout(option, index).picture;
}

void CommentThreadView::keyPressEvent(QKeyEvent *event)
{
    // Enter or Space on a comment with a picture opens the picture, as a tap on it does.
    const int row = currentIndex().row();
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space)
        && !pictureRect(row).isEmpty()) {
        emit pictureTapped(row);
        event->accept();
        return;
    }
    VirtualListView::keyPressEvent(event);
}

void CommentThreadView::mousePressEvent(QMouseEvent *event)
{
    m_pressPosition = event->position().toPoint();
    m_pressRow = event->button() == Qt::LeftButton ? indexAt(m_pressPosition).row() : -1;
    event->accept();
}

void CommentThreadView::mouseReleaseEvent(QMouseEvent *event)
{
    event->accept();
    const int row = std::exchange(m_pressRow, -1);
    const QPoint position = event->position().toPoint();
    if (event->button() != Qt::LeftButton || row < 0 || (position - m_pressPosition).manhattanLength() > tapSlop)
        return;
    if (revealIfPartlyHidden(model()->index(row, 0)))
        return;
    if (pictureRect(row).contains(position))
        emit pictureTapped(row);
}

} // namespace ravelin
