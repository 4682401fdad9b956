#include "views/keyboardnotifier.h"

#include "host/notificationcenter.h"
#include "views/keyboardobserving.h"

#include <QInputMethod>

namespace ravelin {

KeyboardNotifier::KeyboardNotifier(NotificationCenter &center, QInputMethod *inputMethod, QObject *parent)
    : QObject(parent)
    , m_center(center)
    , m_inputMethod(inputMethod)
{
    if (inputMethod == nullptr)
        return;
    m_visible = inputMethod->isVisible();
    m_frame = inputMethod->keyboardRectangle();
    connect(inputMethod, &QInputMethod::visibleChanged, this, &KeyboardNotifier::readInputMethod);
    connect(inputMethod, &QInputMethod::keyboardRectangleChanged, this, &KeyboardNotifier::readInputMethod);
}

void KeyboardNotifier::keyboardChanged(bool visible, const QRectF &frame)
{
    const bool wasVisible = m_visible;
    const QRectF oldFrame = m_frame;
    m_visible = visible;
    m_frame = frame;
    if (visible && (!wasVisible || frame != oldFrame))
        m_center.post(KeyboardNotificationNames::keyboardWillShow, frame);
    else if (!visible && wasVisible)
        m_center.post(KeyboardNotificationNames::keyboardWillHide);
}

void KeyboardNotifier::readInputMethod()
{
    if (m_inputMethod)
        keyboardChanged(m_inputMethod->isVisible(), m_inputMethod->keyboardRectangle());
}

} // namespace ravelin
