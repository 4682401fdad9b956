#pragma once

#include <QColor>
#include <QList>
#include <QString>
#include <QWidget>

class QHBoxLayout;
class QPushButton;

namespace ravelin {

// A row of equally wide segments on a rounded track, one of which may be
// selected; the selected segment stands out in its tint over the track. Each
// segment is a checkable button, so it is reachable by keyboard (Tab, then
// Space or Enter) and screen reader under its title; the segments keep their
// order in the tab chain, wherever they are inserted. Titles follow the
// worker's text size, and shrink where a segment is too narrow for them.
class SegmentedControl : public QWidget
{
    Q_OBJECT

public:
    // The selected index when no segment is selected.
    static constexpr int noSegment = -1;
    // Segments a finger's height (44) inside the track's inset.
    static constexpr int controlHeight = 48;
    // The control's height at the worker's text size.
    [[nodiscard]] static int preferredHeight();

    explicit SegmentedControl(QWidget *parent = nullptr);

    void removeAllSegments();
    // Inserts a segment before `index` (clamped to 0...count). The selection
    // stays on the segment it was on.
    void insertSegment(const QString &title, int index);
    [[nodiscard]] int numberOfSegments() const { return int(m_segments.size()); }
    [[nodiscard]] QString titleForSegment(int index) const;
    [[nodiscard]] QPushButton *segmentButton(int index) const;

    [[nodiscard]] int selectedSegmentIndex() const { return m_selected; }
    // An index outside the segments selects none.
    void setSelectedSegmentIndex(int index);

    [[nodiscard]] QColor selectedSegmentTintColor() const { return m_selectedTint; }
    void setSelectedSegmentTintColor(const QColor &color);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

signals:
    // The worker chose another segment (not sent for setSelectedSegmentIndex).
    void selectedSegmentChanged(int index);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void segmentClicked(QPushButton *button);
    void restyle();
    void fitTitles();

    QHBoxLayout *m_row = nullptr;
    QList<QPushButton *> m_segments;
    int m_selected = noSegment;
    QColor m_selectedTint = Qt::white;
};

} // namespace ravelin
