#pragma once

#include "views/rowheights.h"

#include <QListView>
#include <QPointer>

#include <utility>

class QScrollArea;

namespace ravelin {

// A list of painted rows that takes its full height inside a screen's
// scrolling area, which does the scrolling (and the pull to refresh), while
// only the rows in sight cost anything: a row is measured by its delegate when
// it comes into sight (or one screen ahead of it), and until then counts with
// an estimated height. Measurements are kept per row for the list's width and
// dropped when the row's data or the width changes. When rows above the ones
// in sight turn out taller or shorter than counted, the scrolling area moves by
// as much, so that what the worker looks at stays where it is.
//
// The rows in sight plus one screen ahead, in the direction of the last
// scroll, are reported with rowsInSightChanged() (for pictures worth loading).
//
// A list view to the outside world (screen readers read its rows as a list's
// items), it never runs the list view's own layout, which measures every row.
class VirtualListView : public QListView
{
    Q_OBJECT

public:
    explicit VirtualListView(QWidget *parent = nullptr);

    void setModel(QAbstractItemModel *model) override;

    // The height a row counts with until it is measured.
    [[nodiscard]] int estimatedRowHeight() const { return m_estimate; }
    void setEstimatedRowHeight(int height);
    // Changes of these roles only repaint their rows: they never alter a height.
    void setPaintOnlyRoles(const QList<int> &roles) { m_paintOnlyRoles = roles; }

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    // Every row is measured again when it is next in sight (after a change
    // that alters the heights of all of them).
    void remeasure();
    // How many rows hold a measurement for the current width.
    [[nodiscard]] int measuredRowCount() const { return m_heights.measuredCount(); }
    // The part of the list the scrolling area shows, in the viewport's coordinates.
    [[nodiscard]] QRect sight() const;
    // The rows last reported in sight (plus one screen ahead); -1, -1 for none.
    [[nodiscard]] std::pair<int, int> rowsInSight() const { return m_rowsInSight; }

    [[nodiscard]] QRect visualRect(const QModelIndex &index) const override;
    // A tap on a row the scrolling area shows only in part brings the row into
    // sight instead of acting on it, as a phone's list does: true when it moved.
    // A row taller than the sight is acted on as it is.
    bool revealIfPartlyHidden(const QModelIndex &index);
    // Measures the rows around the row and moves the scrolling area to it.
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;
    [[nodiscard]] QModelIndex indexAt(const QPoint &point) const override;
    void doItemsLayout() override;

signals:
    void rowsInSightChanged(int first, int last);

protected:
    [[nodiscard]] QModelIndex moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers modifiers) override;
    [[nodiscard]] int horizontalOffset() const override { return 0; }
    [[nodiscard]] int verticalOffset() const override { return 0; }
    [[nodiscard]] bool isIndexHidden(const QModelIndex &) const override { return false; }
    void setSelection(const QRect &rect, QItemSelectionModel::SelectionFlags command) override;
    [[nodiscard]] QRegion visualRegionForSelection(const QItemSelection &selection) const override;

    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QList<int> &roles = QList<int>()) override;
    void rowsInserted(const QModelIndex &parent, int start, int end) override;
    void rowsAboutToBeRemoved(const QModelIndex &parent, int start, int end) override;
    void reset() override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void updateGeometries() override;
    [[nodiscard]] QSize viewportSizeHint() const override;

    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void rowsRemoved(const QModelIndex &parent, int first, int last);
    void layoutChanged();
    void followScrollArea();
    void scrolled(int value);
    // Measures the rows in sight and one screen ahead. Outside a paint the list
    // takes its new height at once and the area keeps its rows where they were.
    void prepareSight(bool painting);
    // Measures one row unless it holds a measurement; returns how much the rows
    // below it moved.
    int measure(int row);
    void applyGeometry(int shift);
    void schedulePrepare();
    void reportRowsInSight(int first, int last);
    [[nodiscard]] QModelIndex rowIndex(int row) const;

    RowHeights m_heights;
    int m_estimate = 80;
    int m_width = -1;
    QList<int> m_paintOnlyRoles;
    QPointer<QScrollArea> m_area;
    int m_lastScrollValue = 0;
    bool m_scrollingUp = false;
    bool m_preparePending = false;
    bool m_geometryPending = false;
    std::pair<int, int> m_rowsInSight{-1, -1};
};

} // namespace ravelin
