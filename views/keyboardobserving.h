#pragma once

#include <QObject>
#include <QRectF>
#include <QString>

#include <memory>

namespace ravelin {

class NotificationCenter;

// Names of the keyboard notifications that KeyboardNotifier posts.
namespace KeyboardNotificationNames {
// Object: the keyboard's end frame as a QRectF.
inline const QString keyboardWillShow = QStringLiteral("KeyboardWillShowNotification");
inline const QString keyboardWillHide = QStringLiteral("KeyboardWillHideNotification");
} // namespace KeyboardNotificationNames

// Mixin for screens that move their content out of the keyboard's way. The
// screen adds the observers while it is on screen and removes them when it
// leaves; the two requirements tell it where the keyboard ends up.
class KeyboardObserving
{
public:
    KeyboardObserving();
    virtual ~KeyboardObserving();
    KeyboardObserving(const KeyboardObserving &) = delete;
    KeyboardObserving &operator=(const KeyboardObserving &) = delete;

    // Observes keyboard-will-show and keyboard-will-hide on the centre.
    void addKeyboardObservers(NotificationCenter &center);
    // Stops observing both.
    void removeKeyboardObservers(NotificationCenter &center);

protected:
    // The keyboard is about to show; its frame once shown, in screen coordinates
    // (empty when the notification carried no frame).
    virtual void keyboardWillShow(const QRectF &endFrame) = 0;
    virtual void keyboardWillHide() = 0;

private:
    // Identifies this conformer's registrations; gone with it.
    std::unique_ptr<QObject> m_keyboardObserver = std::make_unique<QObject>();
};

} // namespace ravelin
