#include "demo/app/scenepicker.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <QtMath>

namespace ravelin {

QImage ScenePicker::photo(int n)
{
    QImage image(800, 600, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    // A concrete wall in the light of the hour.
    QLinearGradient wall(0, 0, 800, 600);
    wall.setColorAt(0, QColor::fromHsl((200 + 23 * n) % 360, 25, 185));
    wall.setColorAt(1, QColor::fromHsl((200 + 23 * n) % 360, 20, 110));
    painter.fillRect(image.rect(), wall);
    // A pipe along the wall with a flange.
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x4C, 0x6E, 0x8F));
    painter.drawRect(0, 420, 800, 70);
    painter.setBrush(QColor(0x3A, 0x57, 0x73));
    painter.drawRect(380, 400, 40, 110);
    // The gauge, its face and its needle.
    const QPointF centre(400, 230);
    painter.setBrush(QColor(0x2B, 0x2F, 0x36));
    painter.drawEllipse(centre, 150, 150);
    painter.setBrush(QColor(0xF5, 0xF2, 0xEA));
    painter.drawEllipse(centre, 130, 130);
    painter.setPen(QPen(QColor(0x2B, 0x2F, 0x36), 5, Qt::SolidLine, Qt::RoundCap));
    for (int tick = 0; tick <= 10; ++tick) {
        const qreal angle = qDegreesToRadians(225.0 - 27.0 * tick);
        const QPointF direction(std::cos(angle), -std::sin(angle));
        painter.drawLine(centre + direction * 105, centre + direction * 122);
    }
    painter.setPen(QPen(QColor(0xD6, 0x4D, 0x4D), 7, Qt::SolidLine, Qt::RoundCap));
    const qreal needle = qDegreesToRadians(225.0 - 27.0 * (3 + n % 5));
    painter.drawLine(centre, centre + QPointF(std::cos(needle), -std::sin(needle)) * 110);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x2B, 0x2F, 0x36));
    painter.drawEllipse(centre, 14, 14);
    return image;
}

void ScenePicker::pickImage(QWidget *presenter, Completion completion)
{
    const QImage picture = photo(m_picked++);
    QTimer::singleShot(150, presenter, [guard = QPointer<QWidget>(presenter), completion, picture] {
        if (guard)
            completion(picture);
    });
}

} // namespace ravelin
