#include "demo/app/workerrow.h"

#include "demo/app/hostbrand.h"

#include <QPainter>
#include <QPainterPath>

namespace ravelin {

namespace {
constexpr int avatarSize = 40;
} // namespace

WorkerRow::WorkerRow(qint64 workerId, const QString &name, const QString &role, QWidget *parent)
    : QAbstractButton(parent)
    , m_workerId(workerId)
    , m_name(name)
    , m_role(role)
    , m_avatar(hostbrand::avatar(name, avatarSize, 2.0))
{
    setObjectName(QStringLiteral("worker_%1").arg(workerId));
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    setAccessibleName(name);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumHeight(rowHeight);
}

QSize WorkerRow::sizeHint() const
{
    return QSize(300, rowHeight);
}

void WorkerRow::enterEvent(QEnterEvent *event)
{
    QAbstractButton::enterEvent(event);
    m_hovered = true;
    update();
}

void WorkerRow::leaveEvent(QEvent *event)
{
    QAbstractButton::leaveEvent(event);
    m_hovered = false;
    update();
}

void WorkerRow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(rect()).adjusted(1, 3, -1, -3);

    QColor fill = hostbrand::surface();
    QColor border = hostbrand::hairline();
    if (isChecked()) {
        fill = QColor(0xE6, 0xF4, 0xF2);
        border = hostbrand::primary();
    } else if (m_hovered) {
        fill = QColor(0xF6, 0xFA, 0xF9);
    }
    painter.setPen(QPen(border, isChecked() ? 1.6 : 1.0));
    painter.setBrush(fill);
    painter.drawRoundedRect(box, 12, 12);

    const qreal avatarTop = box.center().y() - avatarSize / 2.0;
    painter.drawPixmap(QPointF(box.left() + 12, avatarTop), m_avatar);

    const qreal textLeft = box.left() + 12 + avatarSize + 12;
    const qreal textWidth = box.right() - 44 - textLeft;
    painter.setPen(hostbrand::text());
    painter.setFont(hostbrand::font(15, QFont::DemiBold));
    painter.drawText(QRectF(textLeft, box.top() + 10, textWidth, 22), Qt::AlignLeft | Qt::AlignVCenter, m_name);
    painter.setPen(hostbrand::secondaryText());
    painter.setFont(hostbrand::font(12));
    painter.drawText(QRectF(textLeft, box.top() + 31, textWidth, 18), Qt::AlignLeft | Qt::AlignVCenter, m_role);

    // The choice mark.
    const QRectF mark(box.right() - 34, box.center().y() - 11, 22, 22);
    if (isChecked()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(hostbrand::primary());
        painter.drawEllipse(mark);
        QPainterPath tick;
        tick.moveTo(mark.left() + 6, mark.center().y() + 0.5);
        tick.lineTo(mark.left() + 9.5, mark.center().y() + 4);
        tick.lineTo(mark.right() - 5.5, mark.top() + 7);
        painter.setPen(QPen(Qt::white, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(tick);
    } else {
        painter.setPen(QPen(hostbrand::hairline(), 1.6));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(mark.adjusted(1, 1, -1, -1));
    }
    if (hasFocus()) {
        painter.setPen(QPen(hostbrand::accent(), 1.4, Qt::DotLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(box.adjusted(3, 3, -3, -3), 10, 10);
    }
}

} // namespace ravelin
