#pragma once

#include "host/imagepicker.h"

#include <QBuffer>
#include <QColor>
#include <QImage>
#include <QTimer>

#include <optional>

namespace ravelin::test {

// A picture of one colour, as a camera of the tests takes it.
inline QImage solidPicture(QColor color = QColor(0x3B, 0x76, 0xC9), QSize size = QSize(64, 48))
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(color);
    return picture;
}

// The picture's JPEG file, as the server sends it.
inline QByteArray jpeg(QColor color = Qt::darkGreen)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    solidPicture(color, QSize(120, 90)).save(&buffer, "JPEG");
    return bytes;
}

// Hands back the picture set by the test (by default a generated one), or
// nothing, as a worker cancelling would; counts the picks.
class TestPicker : public ImagePicker
{
public:
    void pickImage(QWidget *, Completion completion) override
    {
        ++picks;
        QTimer::singleShot(0, [completion, pick = next] { completion(pick); });
    }

    std::optional<QImage> next = solidPicture();
    int picks = 0;
};

} // namespace ravelin::test
