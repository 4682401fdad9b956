#pragma once

#include "api/guardedtarget.h"

#include <QImage>
#include <QString>

#include <functional>
#include <optional>

namespace ravelin {

// Implemented by the host application: what the library tells it and asks of it.
// The library does not own the delegate; it stops calling a delegate that the
// host has destroyed (see GuardedTarget).
class RavelinNavVCDelegate : public GuardedTarget
{
public:
    using UploadCompletion = std::function<void(bool success, std::optional<QString> path)>;

    virtual ~RavelinNavVCDelegate() = default;

    // Forwarded from the dashboard's panel button and swipe.
    virtual void didSwipe(bool isShown) = 0;
    // The token could not be regenerated, or no session data is stored: sign in again.
    virtual void sessionExpired() = 0;
    // Store a picture under the given file name and answer with the server path of
    // the stored file. Call the completion on the main thread.
    virtual void uploadImage(const QImage &image, const QString &fileName, UploadCompletion completion) = 0;
};

} // namespace ravelin
