#pragma once

#include <QImage>
#include <QString>

#include <optional>

namespace ravelin {

class CustomInputBar;

// Receives the comment input bar's send action: the text, the first picked
// picture if any, and the bar (to reset it when the post is done).
class CustomInputBarDelegate
{
public:
    virtual ~CustomInputBarDelegate() = default;
    virtual void customInputBarDidPressSend(const QString &text, const std::optional<QImage> &picture,
                                            CustomInputBar *inputBar)
        = 0;
};

} // namespace ravelin
