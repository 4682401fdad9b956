#pragma once

#include "host/imagepicker.h"

namespace ravelin {

// The demo host's picker, in the window and in the headless tour: instead of a
// camera or a file dialog, it "photographs" a drawn checkpoint (a gauge on a
// wall, in a different light each time).
class ScenePicker : public ImagePicker
{
public:
    void pickImage(QWidget *presenter, Completion completion) override;

    // The n-th picture.
    [[nodiscard]] static QImage photo(int n);

    [[nodiscard]] int picked() const { return m_picked; }

private:
    int m_picked = 0;
};

} // namespace ravelin
