#pragma once

#include <QList>
#include <QObject>
#include <QPoint>
#include <QPointer>

class QWidget;

namespace ravelin {

// Tells when the worker taps (presses and lets go without moving, by finger or
// mouse) anywhere on a view, its children included, like a tap recogniser
// added to a phone's view. It only watches: whatever was tapped still gets its
// tap. Taps on an excluded widget (and its children) are not reported.
class TapRecognizer : public QObject
{
    Q_OBJECT

public:
    // A press that moves further than this is not a tap.
    static constexpr int tapSlop = 8;

    // Watches `view` for as long as both live; the recogniser is the view's child.
    explicit TapRecognizer(QWidget *view);

    void exclude(QWidget *widget);

signals:
    void tapped();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    [[nodiscard]] bool isWatched(const QObject *receiver) const;

    QPointer<QWidget> m_view;
    QList<QPointer<QWidget>> m_excluded;
    QPoint m_pressPosition;
    bool m_pressed = false;
};

} // namespace ravelin
