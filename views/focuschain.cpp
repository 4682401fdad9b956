#include "views/focuschain.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>

namespace ravelin::FocusChain {

bool takesTabFocus(const QWidget *widget)
{
    return widget && (widget->focusPolicy() & Qt::TabFocus) == Qt::TabFocus && !widget->focusProxy()
        && widget->isVisible() && widget->isEnabled();
}

QWidget *first(const QWidget *scope)
{
    if (!scope)
        return nullptr;
    for (QWidget *widget = scope->nextInFocusChain(); widget != scope; widget = widget->nextInFocusChain()) {
        if (scope->isAncestorOf(widget) && takesTabFocus(widget))
            return widget;
    }
    return nullptr;
}

bool moveWithin(QWidget *scope, bool next)
{
    if (!scope)
        return false;
    QWidget *start = QApplication::focusWidget();
    if (!start || !scope->isAncestorOf(start))
        start = scope;
    // The chain is a ring through the whole window: going round comes back.
    QWidget *widget = start;
    do {
        widget = next ? widget->nextInFocusChain() : widget->previousInFocusChain();
        if (widget != scope && scope->isAncestorOf(widget) && takesTabFocus(widget)) {
            widget->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return true;
        }
    } while (widget != start);
    return false;
}

void setOrder(const QList<QWidget *> &widgets)
{
    for (qsizetype i = 1; i < widgets.size(); ++i)
        QWidget::setTabOrder(widgets.at(i - 1), widgets.at(i));
}

bool clickFocusedButton(const QWidget *scope, const QKeyEvent *event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        return false;
    auto *button = qobject_cast<QAbstractButton *>(QApplication::focusWidget());
    if (!button || !scope || !scope->isAncestorOf(button) || !button->isEnabled())
        return false;
    button->click();
    return true;
}

} // namespace ravelin::FocusChain
