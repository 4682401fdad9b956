#include "filter/pickerwheel.h"

#include "resources/namedcolors.h"
#include "views/accessiblefactory.h"
#include "views/focusring.h"
#include "views/textscale.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QVariantAnimation>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace ravelin {

namespace {

// A press that moves less than this is a tap on a row.
constexpr qreal tapSlop = 6;
// How far a flick carries on, in seconds of its speed.
constexpr qreal flickCarry = 0.18;
// How much the wheel curves: the angle of a row one step from the middle.
constexpr qreal curve = 0.28;
// Rows beyond this angle are round the back of the wheel and not drawn.
constexpr qreal maxAngle = 1.2;

// The angle on the wheel of a row `offset` rows from the middle, and the
// distance from the middle at which it is drawn.
qreal angleOf(qreal offset)
{
    return std::clamp(offset * curve, -maxAngle, maxAngle);
}

qreal drawnDistance(qreal offset)
{
    return std::sin(angleOf(offset)) * PickerWheel::scaledRowHeight() / curve;
}

// The row offset drawn at a distance from the middle.
qreal offsetAt(qreal distance)
{
    return std::asin(std::clamp(distance * curve / PickerWheel::scaledRowHeight(), -1.0, 1.0)) / curve;
}

} // namespace

PickerWheel::PickerWheel(QWidget *parent)
    : QWidget(parent)
{
    AccessibleFactory::describe(staticMetaObject, QAccessible::SpinBox);
    // A tap leaves the focus on the field being edited; Tab reaches the wheel.
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setFont(TextScale::font(font(), 20));
    m_animation = new QVariantAnimation(this);
    m_animation->setDuration(220);
    m_animation->setEasingCurve(QEasingCurve::OutCubic);
    connect(m_animation, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        m_position = value.toReal();
        update();
    });
}

void PickerWheel::setItems(const QStringList &items)
{
    if (m_items == items)
        return;
    m_items = items;
    m_enabled.resize(std::min(m_enabled.size(), m_items.size()));
    m_animation->stop();
    m_current = m_items.isEmpty() ? -1 : clampIndex(std::max(m_current, 0));
    m_position = std::max(m_current, 0);
    announceCurrent();
    update();
}

void PickerWheel::paintSelectionBand(QPainter &painter, const QRect &area)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor band = NamedColors::color(ColorNames::labelText, QColor(0x1F, 0x29, 0x37));
    band.setAlphaF(0.07f);
    const QRectF middle(area.left() + 8, area.top() + area.height() / 2.0 - scaledRowHeight() / 2.0, area.width() - 16,
                        scaledRowHeight());
    QPainterPath path;
    path.addRoundedRect(middle, 8, 8);
    painter.fillPath(path, band);
    painter.restore();
}

int PickerWheel::scaledRowHeight()
{
    return TextScale::scaled(rowHeight);
}

void PickerWheel::announceCurrent()
{
    // Heard as the wheel's name, then the row in the middle.
    setAccessibleDescription(m_items.value(m_current));
}

int PickerWheel::clampIndex(int index) const
{
    return m_items.isEmpty() ? -1 : std::clamp(index, 0, count() - 1);
}

void PickerWheel::setCurrentIndex(int index, bool animated)
{
    index = clampIndex(index);
    const bool atRest = m_animation->state() != QAbstractAnimation::Running && !m_dragging;
    if (index == m_current && atRest)
        return;
    m_current = index;
    announceCurrent();
    if (index < 0)
        return;
    if (animated && isVisible()) {
        animateTo(index);
        return;
    }
    m_animation->stop();
    m_position = index;
    update();
}

bool PickerWheel::isItemEnabled(int index) const
{
    return index >= 0 && index < count() && m_enabled.value(index, true);
}

void PickerWheel::setItemsEnabled(const QList<bool> &enabled)
{
    if (m_enabled == enabled)
        return;
    m_enabled = enabled;
    update();
}

void PickerWheel::setTextAlignment(Qt::Alignment alignment)
{
    if (m_alignment == alignment)
        return;
    m_alignment = alignment;
    update();
}

void PickerWheel::step(int rows)
{
    if (m_items.isEmpty() || rows == 0)
        return;
    choose(clampIndex(m_current + rows));
}

void PickerWheel::choose(int index)
{
    m_current = index;
    announceCurrent();
    animateTo(index);
    emit rowSelected(index);
}

void PickerWheel::animateTo(qreal position)
{
    m_animation->stop();
    m_animation->setStartValue(m_position);
    m_animation->setEndValue(position);
    m_animation->start();
}

QRect PickerWheel::rowRect(int index) const
{
    const qreal y = height() / 2.0 + drawnDistance(index - std::max(m_current, 0));
    return QRectF(0, y - scaledRowHeight() / 2.0, width(), scaledRowHeight()).toRect();
}

QSize PickerWheel::sizeHint() const
{
    return {80, scaledRowHeight() * 5};
}

void PickerWheel::paintEvent(QPaintEvent *)
{
    if (m_items.isEmpty())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::TextAntialiasing);
    const QColor text = NamedColors::color(ColorNames::labelText, QColor(0x1F, 0x29, 0x37));
    const QColor dimmed = NamedColors::color(ColorNames::secondaryLabelText, QColor(Qt::gray));
    const qreal middle = height() / 2.0;
    const qreal halfRows = maxAngle / curve + 1;
    const int first = std::max(0, int(std::floor(m_position - halfRows)));
    const int last = std::min(count() - 1, int(std::ceil(m_position + halfRows)));
    const QFont base = font();
    for (int i = first; i <= last; ++i) {
        const qreal offset = i - m_position;
        if (std::abs(offset * curve) > maxAngle)
            continue;
        // Rows lean away on the wheel: closer together, smaller and fainter
        // towards the edges.
        const qreal angle = angleOf(offset);
        const qreal y = middle + drawnDistance(offset);
        const qreal depth = std::cos(angle);
        const qreal scale = 0.55 + 0.45 * depth;
        QColor color = isItemEnabled(i) ? text : dimmed;
        color.setAlphaF(float(std::pow(depth, 1.5) * (isItemEnabled(i) ? 1.0 : 0.55)));
        QFont rowFont = base;
        rowFont.setPixelSize(std::max(8, int(std::lround(base.pixelSize() * scale))));
        if (std::abs(offset) < 0.5)
            rowFont.setWeight(QFont::Medium);
        painter.setFont(rowFont);
        painter.setPen(color);
        const QRectF row(8, y - scaledRowHeight() / 2.0, width() - 16, scaledRowHeight());
        painter.drawText(row, int(m_alignment | Qt::AlignVCenter), m_items.at(i));
    }
    if (hasFocus()) {
        // The row in the middle, ringed while the keyboard turns this wheel.
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(FocusRing::color(), FocusRing::width));
        painter.setBrush(Qt::NoBrush);
        const qreal side = scaledRowHeight();
        painter.drawRoundedRect(QRectF(2, middle - side / 2.0, width() - 4, side), 8, 8);
    }
}

void PickerWheel::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || m_items.isEmpty()) {
        QWidget::mousePressEvent(event);
        return;
    }
    m_animation->stop();
    m_dragging = true;
    m_moved = false;
    m_pressY = m_lastY = event->position().y();
    m_pressPosition = m_position;
    m_velocity = 0;
    m_moveTimer.start();
}

void PickerWheel::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_dragging)
        return;
    const qreal y = event->position().y();
    if (std::abs(y - m_pressY) > tapSlop)
        m_moved = true;
    if (!m_moved)
        return;
    const qreal elapsed = qreal(std::max<qint64>(m_moveTimer.restart(), 1)) / 1000.0;
    m_velocity = 0.6 * m_velocity + 0.4 * ((m_lastY - y) / scaledRowHeight() / elapsed);
    m_lastY = y;
    m_position = std::clamp(m_pressPosition + (m_pressY - y) / scaledRowHeight(), -0.45, count() - 0.55);
    update();
}

void PickerWheel::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_dragging || event->button() != Qt::LeftButton)
        return;
    m_dragging = false;
    if (!m_moved) {
        // A tap on a row above or below the middle turns it to the middle.
        const qreal rows = offsetAt(event->position().y() - height() / 2.0);
        const int index = clampIndex(m_current + int(std::lround(rows)));
        if (index != m_current)
            choose(index);
        else
            animateTo(m_current);
        return;
    }
    // A flick that stopped before the release carries no speed.
    const qreal speed = m_moveTimer.elapsed() > 80 ? 0.0 : m_velocity;
    choose(clampIndex(int(std::lround(m_position + speed * flickCarry))));
}

void PickerWheel::keyPressEvent(QKeyEvent *event)
{
    // Up and Down turn the wheel a row, Page Up and Page Down five, Home and
    // End to the first and last rows.
    switch (event->key()) {
    case Qt::Key_Up: step(-1); break;
    case Qt::Key_Down: step(1); break;
    case Qt::Key_PageUp: step(-5); break;
    case Qt::Key_PageDown: step(5); break;
    case Qt::Key_Home: step(-m_current); break;
    case Qt::Key_End: step(count() - 1 - m_current); break;
    default: QWidget::keyPressEvent(event); return;
    }
    event->accept();
}

void PickerWheel::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    update();
}

void PickerWheel::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    update();
}

void PickerWheel::wheelEvent(QWheelEvent *event)
{
    m_wheelRemainder += event->angleDelta().y();
    const int rows = m_wheelRemainder / 120;
    m_wheelRemainder -= rows * 120;
    // Turning the wheel away (up) moves to earlier rows, like dragging down.
    step(-rows);
    event->accept();
}

} // namespace ravelin
