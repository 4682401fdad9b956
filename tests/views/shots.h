#pragma once

#include <QDir>
#include <QImage>
#include <QString>
#include <QWidget>

namespace ravelin::test {

// Grabs the widget as it is drawn offscreen and keeps a copy under
// /tmp/ravelin-shots/ for looking at the result by eye.
inline QImage grabShot(QWidget &widget, const QString &name)
{
    const QImage image = widget.grab().toImage();
    const QString directory = QStringLiteral("/tmp/ravelin-shots");
    if (QDir().mkpath(directory))
        image.save(directory + QLatin1Char('/') + name + QStringLiteral(".png"));
    return image;
}

} // namespace ravelin::test
