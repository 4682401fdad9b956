#include "views/rowheights.h"

#include <algorithm>

namespace ravelin {

void RowHeights::reset(int count, int estimate)
{
    m_estimate = std::max(1, estimate);
    m_heights.fill(m_estimate, std::max(0, count));
    m_measured.fill(false, std::max(0, count));
    m_measuredCount = 0;
    m_total = m_estimate * int(m_heights.size());
    m_treeValid = false;
}

void RowHeights::insertRows(int first, int count)
{
    if (count <= 0)
        return;
    first = std::clamp(first, 0, this->count());
    m_heights.insert(first, count, m_estimate);
    m_measured.insert(first, count, false);
    m_total += count * m_estimate;
    m_treeValid = false;
}

void RowHeights::removeRows(int first, int count)
{
    first = std::clamp(first, 0, this->count());
    count = std::clamp(count, 0, this->count() - first);
    if (count == 0)
        return;
    m_measuredCount -= int(std::count(m_measured.cbegin() + first, m_measured.cbegin() + first + count, true));
    for (int row = first; row < first + count; ++row)
        m_total -= m_heights.at(row);
    m_heights.remove(first, count);
    m_measured.remove(first, count);
    m_treeValid = false;
}

int RowHeights::setMeasured(int row, int height)
{
    if (!m_measured.at(row)) {
        m_measured[row] = true;
        ++m_measuredCount;
    }
    const int delta = height - m_heights.at(row);
    if (delta != 0) {
        m_heights[row] = height;
        add(row, delta);
    }
    return delta;
}

void RowHeights::dropMeasurement(int row)
{
    if (m_measured.at(row)) {
        m_measured[row] = false;
        --m_measuredCount;
    }
}

void RowHeights::dropAll()
{
    m_measured.fill(false);
    m_measuredCount = 0;
}

int RowHeights::top(int row) const
{
    rebuild();
    int sum = 0;
    for (int i = std::clamp(row, 0, count()); i > 0; i -= i & -i)
        sum += m_tree.at(i);
    return sum;
}

int RowHeights::rowAt(int y) const
{
    if (y < 0 || y >= m_total)
        return -1;
    rebuild();
    int position = 0;
    int remaining = y;
    int step = 1;
    while (step * 2 <= count())
        step *= 2;
    for (; step > 0; step /= 2) {
        const int next = position + step;
        if (next <= count() && m_tree.at(next) <= remaining) {
            position = next;
            remaining -= m_tree.at(next);
        }
    }
    return position;
}

void RowHeights::rebuild() const
{
    if (m_treeValid)
        return;
    // Linear: each node takes its own height and passes its sum up once.
    const int n = count();
    m_tree.fill(0, n + 1);
    for (int i = 1; i <= n; ++i) {
        m_tree[i] += m_heights.at(i - 1);
        if (const int parent = i + (i & -i); parent <= n)
            m_tree[parent] += m_tree.at(i);
    }
    m_treeValid = true;
}

void RowHeights::add(int row, int delta)
{
    m_total += delta;
    if (!m_treeValid)
        return;
    for (int i = row + 1; i <= count(); i += i & -i)
        m_tree[i] += delta;
}

} // namespace ravelin
