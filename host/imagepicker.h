#pragma once

#include <QImage>

#include <functional>
#include <optional>

class QWidget;

namespace ravelin {

// How the library asks for a picture (for an item result, a blocked task or a
// comment). A host may supply its own through the navigation host's
// environment; DefaultImagePicker is used otherwise.
class ImagePicker
{
public:
    using Completion = std::function<void(std::optional<QImage> picture)>;

    virtual ~ImagePicker() = default;

    // Presents the picker over `presenter`. The completion runs once, on the
    // main thread: with the picked picture, or with nothing when the worker
    // cancelled. It does not run when `presenter` is gone by then.
    virtual void pickImage(QWidget *presenter, Completion completion) = 0;
};

} // namespace ravelin
