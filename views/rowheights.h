#pragma once

#include <QList>

namespace ravelin {

// The heights of a list's rows as far as they are known. A row measured at the
// list's current width has its measured height; every other row counts with a
// stand-in: the estimate for a row never measured, or the height it had when
// its measurement was dropped (after a change of its data or of the width).
//
// Positions are prefix sums kept in a Fenwick tree: the top of a row and the
// row at a position cost the logarithm of the row count, and a measurement
// changes the tree in as many steps; rows inserted or removed have it built
// again, in one linear pass. Nothing here ever measures a row.
class RowHeights
{
public:
    // `count` rows, none measured, each counted at `estimate`.
    void reset(int count, int estimate);
    [[nodiscard]] int count() const { return int(m_heights.size()); }
    [[nodiscard]] int estimate() const { return m_estimate; }

    // New rows at the estimate, not measured, before row `first`.
    void insertRows(int first, int count);
    void removeRows(int first, int count);

    [[nodiscard]] bool isMeasured(int row) const { return m_measured.at(row); }
    [[nodiscard]] int height(int row) const { return m_heights.at(row); }
    [[nodiscard]] int measuredCount() const { return m_measuredCount; }
    // Takes a row's measured height; returns how much the rows below it moved.
    int setMeasured(int row, int height);
    // The row counts with its last height until it is measured again.
    void dropMeasurement(int row);
    void dropAll();

    // Where a row starts: the heights of the rows above it added up.
    [[nodiscard]] int top(int row) const;
    [[nodiscard]] int total() const { return m_total; }
    // The row at a position, or -1 outside the rows.
    [[nodiscard]] int rowAt(int y) const;

private:
    // Rows coming and going in runs (a filter) leave the tree to be built
    // again once, when a position is next asked for.
    void rebuild() const;
    void add(int row, int delta);

    QList<int> m_heights;
    QList<bool> m_measured;
    // Fenwick tree over m_heights, one-based.
    mutable QList<int> m_tree;
    mutable bool m_treeValid = false;
    int m_estimate = 1;
    int m_total = 0;
    int m_measuredCount = 0;
};

} // namespace ravelin
