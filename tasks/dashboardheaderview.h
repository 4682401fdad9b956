#pragma once

#include <QColor>
#include <QPointF>
#include <QWidget>

#include <optional>

class QLabel;
class QToolButton;

namespace ravelin {

class PieChartView;
class RoundedView;

// The top of the dashboard: a card with the overall chart of task statuses and
// the button that shows or hides the host's panel. A sideways swipe over it is
// reported too.
class DashboardHeaderView : public QWidget
{
    Q_OBJECT

public:
    // Directions with their platform values (right 1, left 2, up 4, down 8).
    enum class SwipeDirection { right = 1, left = 2, up = 4, down = 8 };
    Q_ENUM(SwipeDirection)

    // A swipe covers at least this distance, mostly sideways.
    static constexpr qreal minimumSwipeDistance = 40;
    static constexpr int chartHeight = 176;

    explicit DashboardHeaderView(QWidget *parent = nullptr);

    [[nodiscard]] PieChartView *pieChartView() const { return m_pieChartView; }
    [[nodiscard]] QToolButton *panelButton() const { return m_panelButton; }
    [[nodiscard]] RoundedView *card() const { return m_card; }

    // The panel button's selected state.
    [[nodiscard]] bool isPanelButtonSelected() const { return m_panelButtonSelected; }
    void setPanelButtonSelected(bool selected);

    // How much of the header shows through (1 fully, 0 not at all): the header
    // fades into the colour behind it.
    [[nodiscard]] qreal contentOpacity() const { return m_contentOpacity; }
    void setContentOpacity(qreal opacity);
    [[nodiscard]] QColor backdropColor() const { return m_backdropColor; }
    void setBackdropColor(const QColor &color);

    // The sideways swipe a drag by this distance is, if it is one: left or right
    // when it is long enough and at least twice as wide as it is high.
    [[nodiscard]] static std::optional<SwipeDirection> swipeDirection(const QPointF &delta);

signals:
    // The panel button was tapped; it passes its state from before the tap and
    // then flips it.
    void panelButtonTapped(bool wasSelected);
    void swiped(ravelin::DashboardHeaderView::SwipeDirection direction);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void updatePanelIcon();
    void updateCover();

    RoundedView *m_card = nullptr;
    PieChartView *m_pieChartView = nullptr;
    QToolButton *m_panelButton = nullptr;
    QLabel *m_caption = nullptr;
    // Laid over everything in the backdrop colour while the header fades.
    QWidget *m_cover = nullptr;
    QColor m_backdropColor = Qt::white;
    qreal m_contentOpacity = 1.0;
    QPointF m_pressPosition;
    bool m_pressed = false;
    bool m_panelButtonSelected = false;
};

} // namespace ravelin
