#pragma once

#include "views/alert.h"

#include <QList>
#include <QString>

#include <chrono>
#include <functional>

class QWidget;

namespace ravelin {

class AlertView;

// Presents the framework's alerts over the window of a screen.
class AlertPresenter
{
public:
    // An alert with buttons over the host's window.
    static AlertView *present(QWidget *host, Alert alert);

    // An alert without buttons that dismisses itself after the delay (or
    // earlier, on Escape) and then runs the completion, unless the host is gone
    // by then (then nothing runs).
    static AlertView *presentTransient(QWidget *host, Alert alert, std::chrono::milliseconds delay,
                                       std::function<void()> completion = {});
    static AlertView *presentTransient(QWidget *host, const QString &title, const QString &message,
                                       std::chrono::milliseconds delay, std::function<void()> completion = {});

    // The alert of a task update event: the title, then the subtitle and the
    // body on two lines as the message.
    static AlertView *presentEventAlert(QWidget *host, const QString &title, const QString &subtitle,
                                        const QString &body, std::chrono::milliseconds delay,
                                        std::function<void()> completion = {});

    // The alerts up in the window of the given widget, oldest first, and the
    // topmost one (nullptr when none).
    [[nodiscard]] static QList<AlertView *> visibleAlerts(const QWidget *widget);
    [[nodiscard]] static AlertView *visibleAlert(const QWidget *widget);
};

} // namespace ravelin
