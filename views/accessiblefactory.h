#pragma once

#include <QAccessible>

class QMetaObject;

namespace ravelin {

// Tells assistive technology (screen readers, UI automation) what the
// library's own widgets are, where Qt cannot know it: a chart, an alert, a
// picker wheel. A widget class is described once; every widget of that class
// (and of its subclasses) is then seen that way.
namespace AccessibleFactory {

// Makes the accessible interface of a widget of a described class.
using Maker = QAccessibleInterface *(*)(QObject *object);

// Widgets of the class are made by `maker`.
void describe(const QMetaObject &widgetClass, Maker maker);
// Widgets of the class are plain widgets in the given role.
void describe(const QMetaObject &widgetClass, QAccessible::Role role);

} // namespace AccessibleFactory

} // namespace ravelin
