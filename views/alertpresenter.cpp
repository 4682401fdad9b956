#include "views/alertpresenter.h"

#include "api/fatalerror.h"
#include "views/alertview.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace ravelin {

AlertView *AlertPresenter::present(QWidget *host, Alert alert)
{
    if (host == nullptr)
        fatalError(QStringLiteral("An alert needs a view to be shown on"), "AlertPresenter");
    auto *view = new AlertView(std::move(alert), host->window());
    view->show();
    view->raise();
    view->setFocus(Qt::OtherFocusReason);
    return view;
}

AlertView *AlertPresenter::presentTransient(QWidget *host, Alert alert, std::chrono::milliseconds delay,
                                            std::function<void()> completion)
{
    alert.actions.clear();
    AlertView *view = present(host, std::move(alert));
    const QPointer<QWidget> guardedHost(host);
    // The alert is the context: if the window (and with it the alert) goes
    // first, nothing fires; if only the host goes, the alert still leaves but
    // the completion does not run. Escape ends the wait early, to the same end.
    const auto finish = [view, guardedHost, completion = std::move(completion)] {
        if (view->isDismissed())
            return;
        view->dismiss();
        if (guardedHost && completion)
            completion();
    };
    QObject::connect(view, &AlertView::dismissalRequested, view, finish);
    QTimer::singleShot(delay, view, finish);
    return view;
}

AlertView *AlertPresenter::presentTransient(QWidget *host, const QString &title, const QString &message,
                                            std::chrono::milliseconds delay, std::function<void()> completion)
{
    Alert alert;
    alert.title = title;
    alert.message = message;
    return presentTransient(host, std::move(alert), delay, std::move(completion));
}

AlertView *AlertPresenter::presentEventAlert(QWidget *host, const QString &title, const QString &subtitle,
                                             const QString &body, std::chrono::milliseconds delay,
                                             std::function<void()> completion)
{
    return presentTransient(host, title, subtitle + QLatin1Char('\n') + body, delay, std::move(completion));
}

QList<AlertView *> AlertPresenter::visibleAlerts(const QWidget *widget)
{
    QList<AlertView *> alerts;
    if (widget == nullptr)
        return alerts;
    const QWidget *window = widget->window();
    const auto children = window->findChildren<AlertView *>(AlertView::objectNameForAlerts, Qt::FindDirectChildrenOnly);
    for (AlertView *alert : children) {
        if (!alert->isDismissed() && !alert->isHidden())
            alerts.append(alert);
    }
    return alerts;
}

AlertView *AlertPresenter::visibleAlert(const QWidget *widget)
{
    const QList<AlertView *> alerts = visibleAlerts(widget);
    return alerts.isEmpty() ? nullptr : alerts.constLast();
}

} // namespace ravelin
