#pragma once

#include <QMap>
#include <QPointer>
#include <QRandomGenerator>
#include <QString>
#include <QWidget>

#include <chrono>
#include <type_traits>

namespace ravelin {

class DemoHostWindow;

namespace test {

// A seeded random walk over the demo host and the task client inside it, as a
// restless user would do it: taps at random points of visible, enabled widgets
// (whatever is drawn there gets the tap: a button, a card painted in a list, an
// alert over it), horizontal swipes, pulls on scroll areas, typing into text
// fields, back, task events and the emergency flag from the host. It knows no
// screen by name, so screens that land later are walked as well. Mouse events go
// through the window system as real ones do; the event loop runs between actions
// so that answers from the server arrive in between.
//
// The same seed makes the same choices from the same screen; network timing can
// still make two runs part ways, so a failing seed is replayed by running it again.
class UiMonkey
{
public:
    enum class Action { tap, swipe, pull, type, back, taskEvent, emergency };

    struct Report
    {
        QMap<Action, int> performed;
        // Taps per screen, by the class of the screen (or overlay) that was hit.
        QMap<QString, int> screens;
        int actions = 0;
        // Nothing to act on (no text field to type into, no scroll area to pull).
        int idle = 0;
    };

    UiMonkey(DemoHostWindow *window, quint32 seed);

    // Runs `actions` more actions and adds them to the report; stops early when
    // the window goes away.
    void run(int actions, Report &report);

    [[nodiscard]] static QString actionName(Action action);
    // One line: actions per kind and taps per screen.
    [[nodiscard]] static QString describe(const Report &report);

private:
    [[nodiscard]] bool perform(Action action, Report &report);
    [[nodiscard]] Action pickAction();
    // Every visible, enabled widget, or those of them `keep` accepts.
    [[nodiscard]] QList<QWidget *> visibleWidgets(bool (*keep)(const QWidget *) = nullptr) const;
    [[nodiscard]] QWidget *pick(const QList<QWidget *> &widgets);
    // One of the list at random, `none` for an empty one.
    template<typename T>
    [[nodiscard]] T any(const QList<T> &list, std::type_identity_t<T> none)
    {
        return list.isEmpty() ? none : list.at(qsizetype(m_random.bounded(quint32(list.size()))));
    }
    [[nodiscard]] QPoint pointIn(const QWidget *widget);
    // Counted in the report's taps per screen when one is given.
    bool tap(QWidget *widget, Report *report = nullptr);
    bool drag(QWidget *widget, QPoint from, QPoint to, std::chrono::milliseconds hold);
    bool swipe();
    bool pull();
    bool type();
    bool back();
    void taskEvent();
    void emergency();
    // Runs the event loop for a random short while.
    void pause();

    QPointer<DemoHostWindow> m_window;
    QRandomGenerator m_random;
    bool m_emergency = false;
};

} // namespace test
} // namespace ravelin
