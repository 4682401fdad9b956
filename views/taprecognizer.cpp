#include "views/taprecognizer.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QWidget>

namespace ravelin {

TapRecognizer::TapRecognizer(QWidget *view)
    : QObject(view)
    , m_view(view)
{
    // A press on a child goes to the child (and, when it declines, up to its
    // parents): seen from the application, every press on the view is seen.
    QCoreApplication::instance()->installEventFilter(this);
}

void TapRecognizer::exclude(QWidget *widget)
{
    m_excluded.append(widget);
}

bool TapRecognizer::isWatched(const QObject *receiver) const
{
    const auto *widget = qobject_cast<const QWidget *>(receiver);
    if (!widget || !m_view || (widget != m_view && !m_view->isAncestorOf(widget)))
        return false;
    for (const QPointer<QWidget> &excluded : m_excluded) {
        if (excluded && (excluded == widget || excluded->isAncestorOf(widget)))
            return false;
    }
    return true;
}

bool TapRecognizer::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::MouseButtonPress && type != QEvent::MouseButtonRelease)
        return false;
    const auto *mouse = static_cast<QMouseEvent *>(event);
    if (mouse->button() != Qt::LeftButton || !isWatched(watched))
        return false;
    // The same press may be seen once per widget it travels up through.
    const QPoint position = mouse->globalPosition().toPoint();
    if (type == QEvent::MouseButtonPress) {
        m_pressed = true;
        m_pressPosition = position;
    } else if (m_pressed) {
        m_pressed = false;
        if ((position - m_pressPosition).manhattanLength() <= tapSlop)
            emit tapped();
    }
    return false;
}

} // namespace ravelin
