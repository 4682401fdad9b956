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

    // The file dialog's filter: the image formats this Qt can read.
    [[nodiscard]] static QString imageFilter();

    // Opens the file dialog over `presenter` (what the camera sheet offers as well).
    static void chooseFile(QWidget *presenter, Completion completion);
};

} // namespace ravelin
