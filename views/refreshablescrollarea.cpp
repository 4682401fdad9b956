#include "views/refreshablescrollarea.h"

#include "views/textscale.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QResizeEvent>
#include <QScrollBar>
#include <QScrollEvent>
#include <QScroller>
#include <QScrollerProperties>
#include <QTimer>
#include <QVariantAnimation>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace ravelin {

namespace {

constexpr int spokes = 12;
constexpr int spinnerSize = 24;
constexpr int spinnerStepMs = 75;
constexpr int bandAnimationMs = 220;

} // namespace

// The band above the content: an activity spinner and the refresh title. While
// the content is pulled its spokes appear one by one; while refreshing they turn.
class RefreshIndicator : public QWidget
{
public:
    explicit RefreshIndicator(QWidget *parent)
        : QWidget(parent)
    {
        setObjectName(QStringLiteral("refreshIndicator"));
        setAttribute(Qt::WA_TransparentForMouseEvents);
        m_timer.setInterval(spinnerStepMs);
        QObject::connect(&m_timer, &QTimer::timeout, this, [this] {
            m_step = (m_step + 1) % spokes;
            update();
        });
    }

    void setTitle(const QString &title)
    {
        m_title = title;
        // A screen reader hears what the spinner is busy with.
        setAccessibleName(title);
        update();
    }

    void setColor(const QColor &color)
    {
        m_color = color;
        update();
    }

    void setProgress(qreal progress)
    {
        progress = std::clamp<qreal>(progress, 0, 1);
        if (qFuzzyCompare(progress + 1, m_progress + 1))
            return;
        m_progress = progress;
        update();
    }

    void setSpinning(bool spinning)
    {
        if (spinning == m_timer.isActive())
            return;
        if (spinning)
            m_timer.start();
        else
            m_timer.stop();
        update();
    }

    [[nodiscard]] bool isSpinning() const { return m_timer.isActive(); }

protected:
    void paintEvent(QPaintEvent *) override
    {
        if (height() <= 0)
            return;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setRenderHint(QPainter::TextAntialiasing);
        painter.setOpacity(std::clamp<qreal>(qreal(height()) / RefreshableScrollArea::indicatorHeight, 0, 1));

        const QFont titleFont = TextScale::font(font(), 12);
        const QFontMetricsF metrics(titleFont);
        const qreal block = spinnerSize + (m_title.isEmpty() ? 0 : 6 + metrics.height());
        // The block sits in the middle of the last indicatorHeight pixels, so it
        // comes down with the content while it is pulled.
        const qreal band = std::min<qreal>(height(), RefreshableScrollArea::indicatorHeight);
        const qreal top = height() - band + (band - block) / 2.0;
        const QPointF centre(width() / 2.0, top + spinnerSize / 2.0);

        const bool spinning = m_timer.isActive();
        const int shown = spinning ? spokes : static_cast<int>(std::floor(m_progress * spokes + 0.001));
        for (int i = 0; i < shown; ++i) {
            // Spoke i points at i * 30 degrees from twelve o'clock, clockwise.
            const qreal angle = qDegreesToRadians(i * 360.0 / spokes);
            const QPointF direction(std::sin(angle), -std::cos(angle));
            QColor color = m_color;
            if (spinning) {
                // The newest spoke is the darkest; the ones behind it fade.
                const int age = (m_step - i + spokes) % spokes;
                color.setAlphaF(static_cast<float>(1.0 - 0.75 * age / (spokes - 1)));
            } else {
                color.setAlphaF(0.55f);
            }
            QPen pen(color, 2.4, Qt::SolidLine, Qt::RoundCap);
            painter.setPen(pen);
            painter.drawLine(centre + direction * (spinnerSize * 0.22), centre + direction * (spinnerSize * 0.46));
        }

        if (!m_title.isEmpty()) {
            painter.setFont(titleFont);
            painter.setPen(m_color);
            const QRectF text(0, top + spinnerSize + 6, width(), metrics.height());
            painter.drawText(text, Qt::AlignHCenter | Qt::AlignVCenter,
                             metrics.elidedText(m_title, Qt::ElideRight, width() - 24));
        }
    }

private:
    QString m_title;
    QColor m_color = Qt::darkGray;
    QTimer m_timer;
    qreal m_progress = 0;
    int m_step = 0;
};

RefreshableScrollArea::RefreshableScrollArea(QWidget *parent)
    : QScrollArea(parent)
{
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Not a stop of its own for Tab: it follows the focus through its content,
    // and Page Up and Page Down still scroll it from there.
    setFocusPolicy(Qt::NoFocus);

    m_indicator = new RefreshIndicator(this);
    m_indicator->setColor(m_tintColor);
    m_indicator->hide();

    m_bandAnimation = new QVariantAnimation(this);
    m_bandAnimation->setDuration(bandAnimationMs);
    m_bandAnimation->setEasingCurve(QEasingCurve::OutCubic);
    connect(m_bandAnimation, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        m_restingBand = value.toInt();
        applyBand();
    });

    QScroller::grabGesture(viewport(), QScroller::LeftMouseButtonGesture);
    QScroller *kinetic = QScroller::scroller(viewport());
    QScrollerProperties properties = kinetic->scrollerProperties();
    properties.setScrollMetric(QScrollerProperties::VerticalOvershootPolicy,
                               QVariant::fromValue(QScrollerProperties::OvershootAlwaysOn));
    properties.setScrollMetric(QScrollerProperties::HorizontalOvershootPolicy,
                               QVariant::fromValue(QScrollerProperties::OvershootAlwaysOff));
    properties.setScrollMetric(QScrollerProperties::OvershootDragResistanceFactor, 0.5);
    properties.setScrollMetric(QScrollerProperties::OvershootDragDistanceFactor, 0.35);
    properties.setScrollMetric(QScrollerProperties::OvershootScrollDistanceFactor, 0.1);
    // Taps reach the content at once; a drag that follows takes over.
    properties.setScrollMetric(QScrollerProperties::MousePressEventDelay, 0.0);
    kinetic->setScrollerProperties(properties);

    connect(kinetic, &QScroller::stateChanged, this, [this](QScroller::State state) {
        switch (state) {
        case QScroller::Pressed:
        case QScroller::Dragging: m_triggeredThisPull = false; break;
        case QScroller::Scrolling:
        case QScroller::Inactive:
            // Letting go far enough down starts the refresh.
            if (!m_triggeredThisPull && !m_refreshing && m_pull >= triggerDistance) {
                m_triggeredThisPull = true;
                setRefreshing(true);
                emit refreshRequested();
            }
            if (state == QScroller::Inactive)
                setPull(0);
            break;
        }
    });
}

RefreshableScrollArea::~RefreshableScrollArea()
{
    QScroller::ungrabGesture(viewport());
}

void RefreshableScrollArea::setRefreshTitle(const QString &title)
{
    if (m_refreshTitle == title)
        return;
    m_refreshTitle = title;
    m_indicator->setTitle(title);
    emit appearanceChanged();
}

void RefreshableScrollArea::setTintColor(const QColor &color)
{
    if (m_tintColor == color)
        return;
    m_tintColor = color;
    m_indicator->setColor(color);
    emit appearanceChanged();
}

void RefreshableScrollArea::beginRefreshing()
{
    setRefreshing(true);
}

void RefreshableScrollArea::endRefreshing()
{
    setRefreshing(false);
}

void RefreshableScrollArea::refresh()
{
    if (m_refreshing)
        return;
    setRefreshing(true);
    emit refreshRequested();
}

QWidget *RefreshableScrollArea::indicator() const
{
    return m_indicator;
}

QScroller *RefreshableScrollArea::scroller() const
{
    return QScroller::scroller(viewport());
}

bool RefreshableScrollArea::event(QEvent *event)
{
    if (event->type() == QEvent::Scroll) {
        // The scroller's overshoot at the top is the pull; it opens the band
        // above the content instead of moving the viewport.
        const auto *scroll = static_cast<QScrollEvent *>(event);
        horizontalScrollBar()->setValue(qRound(scroll->contentPos().x()));
        verticalScrollBar()->setValue(qRound(scroll->contentPos().y()));
        setPull(std::max<qreal>(0, -scroll->overshootDistance().y()));
        return true;
    }
    return QScrollArea::event(event);
}

void RefreshableScrollArea::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    placeIndicator();
}

void RefreshableScrollArea::setPull(qreal pull)
{
    if (qFuzzyCompare(pull + 1, m_pull + 1))
        return;
    m_pull = pull;
    applyBand();
}

void RefreshableScrollArea::setRefreshing(bool refreshing)
{
    if (m_refreshing == refreshing)
        return;
    m_refreshing = refreshing;
    m_indicator->setSpinning(refreshing);
    animateRestingBand(refreshing ? indicatorHeight : 0);
    emit refreshingChanged(refreshing);
}

void RefreshableScrollArea::animateRestingBand(int to)
{
    m_bandAnimation->stop();
    // While the content is pulled further than the band, the band is already
    // open: it only has to stay when the pull goes back.
    const int from = std::max(m_restingBand, static_cast<int>(std::lround(m_pull)));
    if (from == to || !isVisible()) {
        m_restingBand = to;
        applyBand();
        return;
    }
    m_bandAnimation->setStartValue(from);
    m_bandAnimation->setEndValue(to);
    m_bandAnimation->start();
}

void RefreshableScrollArea::applyBand()
{
    const int band = std::max(m_restingBand, static_cast<int>(std::lround(m_pull)));
    m_indicator->setProgress(m_pull / triggerDistance);
    if (band == m_band)
        return;
    m_band = band;
    setViewportMargins(0, band, 0, 0);
    placeIndicator();
}

void RefreshableScrollArea::placeIndicator()
{
    const QRect frame = contentsRect();
    m_indicator->setGeometry(frame.left(), frame.top(), frame.width(), m_band);
    m_indicator->setVisible(m_band > 0);
    m_indicator->raise();
}

} // namespace ravelin
