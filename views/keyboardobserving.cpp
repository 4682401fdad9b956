#include "views/keyboardobserving.h"

#include "host/notificationcenter.h"

#include <QVariant>

namespace ravelin {

KeyboardObserving::KeyboardObserving() = default;

KeyboardObserving::~KeyboardObserving() = default;

void KeyboardObserving::addKeyboardObservers(NotificationCenter &center)
{
    QObject *observer = m_keyboardObserver.get();
    // Registering twice would call the screen twice for one keyboard change.
    removeKeyboardObservers(center);
    center.addObserver(observer, KeyboardNotificationNames::keyboardWillShow, [this](const QVariant &object) {
        keyboardWillShow(object.canConvert<QRectF>() ? object.toRectF() : QRectF());
    });
    center.addObserver(observer, KeyboardNotificationNames::keyboardWillHide,
                       [this](const QVariant &) { keyboardWillHide(); });
}

void KeyboardObserving::removeKeyboardObservers(NotificationCenter &center)
{
    QObject *observer = m_keyboardObserver.get();
    center.removeObserver(observer, KeyboardNotificationNames::keyboardWillShow);
    center.removeObserver(observer, KeyboardNotificationNames::keyboardWillHide);
}

} // namespace ravelin
