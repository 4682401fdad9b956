#pragma once

#include "views/attributedtext.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace ravelin {

enum class AlertActionStyle { standard, cancel, destructive };

// One button of an alert. The handler runs after the alert has been dismissed.
struct AlertAction
{
    QString title;
    AlertActionStyle style = AlertActionStyle::standard;
    std::function<void()> handler;
};

// What an alert shows: a title, a message (plain, or styled when the screen sets
// the "attributedMessage") and its buttons (none for alerts that dismiss
// themselves).
struct Alert
{
    QString title;
    QString message;
    std::optional<AttributedText> attributedMessage;
    QList<AlertAction> actions;

    Alert &addAction(QString actionTitle, AlertActionStyle style = AlertActionStyle::standard,
                     std::function<void()> handler = {})
    {
        actions.append({std::move(actionTitle), style, std::move(handler)});
        return *this;
    }
};

} // namespace ravelin
