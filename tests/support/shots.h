#pragma once

#include <QDir>
#include <QImage>
#include <QString>
#include <QWidget>

namespace ravelin::test {

// Grabs the widget as it is drawn offscreen. With RAVELIN_TEST_SHOTS set to a
// folder, a copy is kept there as NAME.png for looking at the result by eye.
inline QImage grabShot(QWidget &widget, const QString &name)
{
    const QImage image = widget.grab().toImage();
    const QString directory = qEnvironmentVariable("RAVELIN_TEST_SHOTS");
    if (!directory.isEmpty() && QDir().mkpath(directory))
        image.save(directory + QLatin1Char('/') + name + QStringLiteral(".png"));
    return image;
}

} // namespace ravelin::test
