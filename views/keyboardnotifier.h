#pragma once

#include <QObject>
#include <QPointer>
#include <QRectF>

class QInputMethod;

namespace ravelin {

class NotificationCenter;

// Turns the platform input method's keyboard changes into the keyboard
// notifications on a notification centre: will-show (with the keyboard frame)
// when the keyboard appears or its frame changes while shown, will-hide when it
// goes away.
class KeyboardNotifier : public QObject
{
    Q_OBJECT

public:
    // Watches the input method when one is given (the application's, usually).
    explicit KeyboardNotifier(NotificationCenter &center, QInputMethod *inputMethod, QObject *parent = nullptr);

    // The keyboard's state changed; posts what follows from the change.
    void keyboardChanged(bool visible, const QRectF &frame);

    [[nodiscard]] bool keyboardVisible() const { return m_visible; }
    [[nodiscard]] QRectF keyboardFrame() const { return m_frame; }

private:
    void readInputMethod();

    NotificationCenter &m_center;
    QPointer<QInputMethod> m_inputMethod;
    bool m_visible = false;
    QRectF m_frame;
};

} // namespace ravelin
