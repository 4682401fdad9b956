#include "views/accessiblefactory.h"

#include <QAccessibleWidget>
#include <QHash>
#include <QMetaObject>
#include <QWidget>

#include <variant>

namespace ravelin::AccessibleFactory {

namespace {

using Description = std::variant<Maker, QAccessible::Role>;

QHash<QString, Description> &described()
{
    static QHash<QString, Description> classes;
    return classes;
}

// Qt asks with each class name of the object's hierarchy, most derived first.
QAccessibleInterface *make(const QString &className, QObject *object)
{
    const auto found = described().constFind(className);
    if (found == described().constEnd() || !object || !object->isWidgetType())
        return nullptr;
    if (const auto *maker = std::get_if<Maker>(&*found))
        return (*maker)(object);
    return new QAccessibleWidget(static_cast<QWidget *>(object), std::get<QAccessible::Role>(*found));
}

void add(const QMetaObject &widgetClass, Description description)
{
    static const bool installed = [] {
        QAccessible::installFactory(&make);
        return true;
    }();
    Q_UNUSED(installed);
    described().insert(QString::fromLatin1(widgetClass.className()), description);
}

} // namespace

void describe(const QMetaObject &widgetClass, Maker maker)
{
    add(widgetClass, maker);
}

void describe(const QMetaObject &widgetClass, QAccessible::Role role)
{
    add(widgetClass, role);
}

} // namespace ravelin::AccessibleFactory
