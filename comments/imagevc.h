#pragma once

#include "host/screen.h"

#include <QImage>

class QLabel;
class QToolButton;

namespace ravelin {

// A comment's picture, full screen on black, with a close button (Escape
// closes it too).
class ImageVC : public Screen
{
    Q_OBJECT

public:
    explicit ImageVC(QWidget *parent = nullptr);

    [[nodiscard]] QImage image() const { return m_image; }
    // Set before the screen loads.
    void setImage(const QImage &image);

    void viewDidLoad() override;
    // Closes the screen.
    void didPressClose();

    [[nodiscard]] QWidget *imageView() const { return m_imageView; }
    [[nodiscard]] QToolButton *closeButton() const { return m_closeButton; }

private:
    QImage m_image;
    QWidget *m_imageView = nullptr;
    QToolButton *m_closeButton = nullptr;
};

} // namespace ravelin
