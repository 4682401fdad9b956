#pragma once

#include <QList>

class QKeyEvent;
class QWidget;

namespace ravelin {

// Keyboard use of the screens: the order in which Tab goes through the
// controls, keeping the focus inside a modal part (a presented screen, an
// alert, a picker sheet), and Enter acting on the focused button as Space does.
namespace FocusChain {

// Whether Tab stops at the widget now: shown, enabled, taking the focus by Tab.
[[nodiscard]] bool takesTabFocus(const QWidget *widget);

// The first widget inside `scope` (not `scope` itself) at which Tab stops, if any.
[[nodiscard]] QWidget *first(const QWidget *scope);

// Moves the focus to the next (or previous) widget inside `scope` at which Tab
// stops, going round at the end. False when there is none.
bool moveWithin(QWidget *scope, bool next);

// Tab goes through the widgets in the order given.
void setOrder(const QList<QWidget *> &widgets);

// Enter (or Return) on a focused button inside `scope` clicks it, as Space
// does; true when the key was used so.
bool clickFocusedButton(const QWidget *scope, const QKeyEvent *event);

} // namespace FocusChain

} // namespace ravelin
