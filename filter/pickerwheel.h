#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QStringList>
#include <QWidget>

class QPainter;
class QVariantAnimation;

namespace ravelin {

// One column of a picker: rows on a wheel that the worker drags, flicks, turns
// with the mouse wheel or the arrow keys, or taps; the row in the middle is the
// chosen one. Rows farther from the middle fade. Rows can be shown as
// unavailable (dimmed); the picker that owns the wheel decides what choosing
// one leads to. A screen reader hears the wheel as a spin box named by its
// accessible name, with the chosen row as its description.
class PickerWheel : public QWidget
{
    Q_OBJECT

public:
    static constexpr int rowHeight = 36;
    // A row's height at the worker's text size.
    [[nodiscard]] static int scaledRowHeight();
    // The band across the middle of `area` that marks the chosen row of the
    // wheels standing side by side in it.
    static void paintSelectionBand(QPainter &painter, const QRect &area);

    explicit PickerWheel(QWidget *parent = nullptr);

    [[nodiscard]] QStringList items() const { return m_items; }
    // Keeps the current row when it still exists.
    void setItems(const QStringList &items);
    [[nodiscard]] int count() const { return int(m_items.size()); }

    // -1 when there are no rows.
    [[nodiscard]] int currentIndex() const { return m_current; }
    // Moves to the row (clamped into the rows) without reporting it.
    void setCurrentIndex(int index, bool animated = false);

    [[nodiscard]] bool isItemEnabled(int index) const;
    // Rows without an entry are available.
    void setItemsEnabled(const QList<bool> &enabled);

    void setTextAlignment(Qt::Alignment alignment);

    // Turns the wheel by some rows as the worker would, and reports the row.
    void step(int rows);

    // Where a row is drawn while the wheel is at rest.
    [[nodiscard]] QRect rowRect(int index) const;

    [[nodiscard]] QSize sizeHint() const override;

signals:
    // The worker brought a row to the middle.
    void rowSelected(int index);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void announceCurrent();
    void animateTo(qreal position);
    void choose(int index);
    [[nodiscard]] int clampIndex(int index) const;

    QStringList m_items;
    QList<bool> m_enabled;
    int m_current = -1;
    // The wheel's position in rows: the row at the middle, fractional while moving.
    qreal m_position = 0;
    Qt::Alignment m_alignment = Qt::AlignCenter;
    QVariantAnimation *m_animation = nullptr;

    bool m_dragging = false;
    bool m_moved = false;
    qreal m_pressY = 0;
    qreal m_pressPosition = 0;
    qreal m_lastY = 0;
    qreal m_velocity = 0; // rows per second, upwards positive
    QElapsedTimer m_moveTimer;
    int m_wheelRemainder = 0;
};

} // namespace ravelin
