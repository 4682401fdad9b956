#pragma once

#include <QColor>
#include <QScrollArea>
#include <QString>

class QScroller;
class QVariantAnimation;

namespace ravelin {

class RefreshIndicator;

// A vertically scrolling area with kinetic (finger or mouse) dragging and
// pull-to-refresh: pulling the content down past its top reveals a spinner with
// a title; pulling far enough starts the refresh and asks for new data. The
// spinner stays above the content until the refresh is ended. On a desktop the
// same is reached with refresh().
class RefreshableScrollArea : public QScrollArea
{
    Q_OBJECT
    Q_PROPERTY(bool refreshing READ isRefreshing NOTIFY refreshingChanged)
    Q_PROPERTY(QString refreshTitle READ refreshTitle WRITE setRefreshTitle NOTIFY appearanceChanged)
    Q_PROPERTY(QColor tintColor READ tintColor WRITE setTintColor NOTIFY appearanceChanged)

public:
    // Height of the band that holds the spinner and the title while refreshing.
    static constexpr int indicatorHeight = 64;
    // How far the content must be pulled down to start a refresh.
    static constexpr int triggerDistance = 72;

    explicit RefreshableScrollArea(QWidget *parent = nullptr);
    ~RefreshableScrollArea() override;

    // The text under the spinner.
    [[nodiscard]] QString refreshTitle() const { return m_refreshTitle; }
    void setRefreshTitle(const QString &title);
    // The colour of the spinner and of the title.
    [[nodiscard]] QColor tintColor() const { return m_tintColor; }
    void setTintColor(const QColor &color);

    [[nodiscard]] bool isRefreshing() const { return m_refreshing; }
    // Shows the spinning indicator without asking for data.
    void beginRefreshing();
    // Stops the spinner and gives the band back to the content.
    void endRefreshing();
    // What a pull does, for desktops: shows the spinner and asks for data.
    // Does nothing while a refresh is running.
    void refresh();

    // How far the content is pulled down past its top right now.
    [[nodiscard]] qreal pullDistance() const { return m_pull; }
    // The height the indicator band takes above the content right now.
    [[nodiscard]] int indicatorBand() const { return m_band; }
    // The spinner-and-title widget (for looks and tests).
    [[nodiscard]] QWidget *indicator() const;
    [[nodiscard]] QScroller *scroller() const;

signals:
    // The user pulled far enough, or refresh() was called.
    void refreshRequested();
    void refreshingChanged(bool refreshing);
    void appearanceChanged();

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void setPull(qreal pull);
    void setRefreshing(bool refreshing);
    void animateRestingBand(int to);
    void applyBand();
    void placeIndicator();

    RefreshIndicator *m_indicator = nullptr;
    QVariantAnimation *m_bandAnimation = nullptr;
    QString m_refreshTitle;
    QColor m_tintColor = Qt::darkGray;
    qreal m_pull = 0;
    // The band kept open while not pulled: indicatorHeight while refreshing,
    // animating to 0 after it.
    int m_restingBand = 0;
    int m_band = 0;
    bool m_refreshing = false;
    // A pull that has started a refresh does not start another before it ends.
    bool m_triggeredThisPull = false;
};

} // namespace ravelin
