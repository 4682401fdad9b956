#pragma once

#include "views/virtuallistview.h"

namespace ravelin {

class CommentTableViewCell;
class CommentThreadModel;

// The comment thread's list: painted rows over a CommentThreadModel inside the
// screen's scrolling area, measured as they come into sight; the rows in sight
// and one screen ahead are the ones whose pictures the model loads. A tap on a
// comment's picture, or Enter or Space on its row, is reported with the row.
class CommentThreadView : public VirtualListView
{
    Q_OBJECT

public:
    static constexpr int tapSlop = 8;

    explicit CommentThreadView(QWidget *parent = nullptr);

    void setThreadModel(CommentThreadModel *model);
    [[nodiscard]] CommentThreadModel *threadModel() const { return m_model; }

    // Where a row's picture is, in the viewport; empty without one.
    [[nodiscard]] QRect pictureRect(int row) const;

signals:
    void pictureTapped(int row);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    CommentThreadModel *m_model = nullptr;
    CommentTableViewCell *m_painter = nullptr;
    QPoint m_pressPosition;
    int m_pressRow = -1;
};

} // namespace ravelin
