#include "tasks/dashboardheaderview.h"

#include "resources/namedcolors.h"
#include "tasks/piechartview.h"
#include "views/focusring.h"
#include "views/roundedview.h"
#include "views/textscale.h"
#include "views/touchtarget.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QResizeEvent>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace ravelin {

namespace {

constexpr int iconSide = 22;

// A side panel glyph: a rounded frame with a column on the left, filled when the
// panel is shown.
QIcon panelIcon(const QColor &color, bool selected)
{
    QIcon icon;
    for (const qreal ratio : {1.0, 2.0, 3.0}) {
        QPixmap pixmap(QSize(iconSide, iconSide) * ratio);
        pixmap.setDevicePixelRatio(ratio);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF frame(2.5, 4.5, iconSide - 5, iconSide - 9);
        painter.setPen(QPen(color, 1.6));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(frame, 3, 3);
        const QRectF column(frame.left(), frame.top(), frame.width() * 0.36, frame.height());
        if (selected) {
            QPainterPath path;
            path.addRoundedRect(column, 3, 3);
            painter.fillPath(path, color);
        } else {
            painter.drawLine(QPointF(column.right(), frame.top()), QPointF(column.right(), frame.bottom()));
        }
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace

DashboardHeaderView::DashboardHeaderView(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("headerView"));

    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(12, 12, 12, 4);
    outer->setSpacing(0);

    m_card = new RoundedView(this);
    m_card->setObjectName(QStringLiteral("overallProgressView"));
    m_card->setCornerRadius(16);
    m_card->setCustomBackgroundColor(NamedColors::color(ColorNames::viewBackground, QColor(Qt::white)));
    outer->addWidget(m_card);

    auto *column = new QVBoxLayout(m_card);
    column->setContentsMargins(14, 10, 10, 10);
    column->setSpacing(2);

    auto *top = new QHBoxLayout;
    top->setSpacing(6);
    m_caption = new QLabel(tr("Overview"), m_card);
    m_caption->setObjectName(QStringLiteral("headerCaption"));
    m_caption->setFont(TextScale::font(m_caption->font(), 13, QFont::DemiBold));
    m_caption->setStyleSheet(
        QStringLiteral("color: %1;").arg(NamedColors::color(ColorNames::secondaryLabelText, QColor(Qt::gray)).name()));
    top->addWidget(m_caption);
    top->addStretch(1);

    m_panelButton = new QToolButton(m_card);
    m_panelButton->setObjectName(QStringLiteral("panelButton"));
    m_panelButton->setAccessibleName(tr("Panel"));
    m_panelButton->setToolTip(tr("Show or hide the panel"));
    m_panelButton->setAccessibleDescription(m_panelButton->toolTip());
    m_panelButton->setCursor(Qt::PointingHandCursor);
    m_panelButton->setAutoRaise(true);
    m_panelButton->setIconSize(QSize(iconSide, iconSide));
    m_panelButton->setFixedSize(
        TextScale::scaled(QSize(34, 30)).expandedTo(QSize(TouchTarget::minimumSide, TouchTarget::minimumSide)));
    m_panelButton->setStyleSheet(QStringLiteral("QToolButton { border: 2px solid transparent; border-radius: 8px; }"
                                                "QToolButton:pressed { background: rgba(0,0,0,20); }"
                                                "QToolButton:focus { border-color: %1; }")
                                     .arg(FocusRing::color().name()));
    connect(m_panelButton, &QToolButton::clicked, this, [this] {
        const bool wasSelected = m_panelButtonSelected;
        emit panelButtonTapped(wasSelected);
        setPanelButtonSelected(!wasSelected);
    });
    top->addWidget(m_panelButton);
    column->addLayout(top);

    m_pieChartView = new PieChartView(m_card);
    m_pieChartView->setObjectName(QStringLiteral("pieChartView"));
    m_pieChartView->setLegendVisible(true);
    m_pieChartView->setFixedHeight(TextScale::scaled(chartHeight));
    column->addWidget(m_pieChartView);

    m_cover = new QWidget(this);
    m_cover->setObjectName(QStringLiteral("fadeCover"));
    m_cover->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_cover->setAutoFillBackground(true);
    m_cover->hide();

    updatePanelIcon();
}

void DashboardHeaderView::setContentOpacity(qreal opacity)
{
    opacity = std::clamp<qreal>(opacity, 0, 1);
    if (qFuzzyCompare(opacity + 1, m_contentOpacity + 1))
        return;
    m_contentOpacity = opacity;
    updateCover();
}

void DashboardHeaderView::setBackdropColor(const QColor &color)
{
    if (m_backdropColor == color)
        return;
    m_backdropColor = color;
    updateCover();
}

void DashboardHeaderView::updateCover()
{
    // Fading the content into a uniform backdrop is a cover in that colour whose
    // own opacity grows as the content's falls.
    QColor cover = m_backdropColor;
    cover.setAlphaF(static_cast<float>(1.0 - m_contentOpacity));
    QPalette palette = m_cover->palette();
    palette.setColor(QPalette::Window, cover);
    m_cover->setPalette(palette);
    m_cover->setVisible(m_contentOpacity < 1.0);
    m_cover->raise();
    m_cover->update();
}

void DashboardHeaderView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_cover->setGeometry(rect());
}

void DashboardHeaderView::setPanelButtonSelected(bool selected)
{
    if (m_panelButtonSelected == selected)
        return;
    m_panelButtonSelected = selected;
    updatePanelIcon();
}

std::optional<DashboardHeaderView::SwipeDirection> DashboardHeaderView::swipeDirection(const QPointF &delta)
{
    const qreal across = std::abs(delta.x());
    const qreal down = std::abs(delta.y());
    if (across < minimumSwipeDistance || across < 2 * down)
        return std::nullopt;
    return delta.x() < 0 ? SwipeDirection::left : SwipeDirection::right;
}

void DashboardHeaderView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    m_pressed = true;
    m_pressPosition = event->position();
    event->accept();
}

void DashboardHeaderView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_pressed) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    m_pressed = false;
    event->accept();
    if (const auto direction = swipeDirection(event->position() - m_pressPosition))
        emit swiped(*direction);
}

void DashboardHeaderView::updatePanelIcon()
{
    const QColor color = NamedColors::color(ColorNames::accent, QColor(0, 122, 255));
    m_panelButton->setIcon(panelIcon(color, m_panelButtonSelected));
}

} // namespace ravelin
