#pragma once

#include <QImage>
#include <QList>

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
    using PicturesCompletion = std::function<void(QList<QImage> pictures)>;

    virtual ~ImagePicker() = default;

    // Presents the picker over `presenter`. The completion runs once, on the
    // main thread: with the picked picture, or with nothing when the worker
    // cancelled. It does not run when `presenter` is gone by then.
    virtual void pickImage(QWidget *presenter, Completion completion) = 0;

    // The same, where the worker may choose several pictures: the completion
    // gets them in the order chosen (none when cancelled). A picker that picks
    // one at a time need not override it.
    virtual void pickImages(QWidget *presenter, PicturesCompletion completion)
    {
        pickImage(presenter, [completion = std::move(completion)](std::optional<QImage> picture) {
            completion(picture ? QList<QImage>{*picture} : QList<QImage>{});
        });
    }
};

} // namespace ravelin
