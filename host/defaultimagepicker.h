#pragma once

#include "host/imagepicker.h"

namespace ravelin {

// The library's own picker: where Qt Multimedia finds a camera, a camera sheet
// with a live picture, a shutter button and a way to choose a file instead;
// without a camera, the platform's file dialog with image filters.
class DefaultImagePicker : public ImagePicker
{
public:
    void pickImage(QWidget *presenter, Completion completion) override;
    // Without a camera the file dialog takes several files at once.
    void pickImages(QWidget *presenter, PicturesCompletion completion) override;

    // The file dialog's filter: the image formats this Qt can read.
    [[nodiscard]] static QString imageFilter();

    // Opens the file dialog over `presenter` (what the camera sheet offers as well).
    static void chooseFile(QWidget *presenter, Completion completion);
    // Opens the file dialog for one or more pictures; files that are not pictures are left out.
    static void chooseFiles(QWidget *presenter, PicturesCompletion completion);
};

} // namespace ravelin
