#pragma once

#include <QColor>
#include <QFont>
#include <QPixmap>
#include <QString>

class QPainter;
class QRectF;

// The demo host application's own look, kept apart from the library's colours
// so that what belongs to the host is easy to tell on screen.
namespace ravelin::hostbrand {

inline const QString productName = QStringLiteral("Ravelin Demo");
inline const QString tagline = QStringLiteral("Field service workspace");

[[nodiscard]] QColor primary(); // deep teal
[[nodiscard]] QColor primaryDark(); // the darker end of the host gradient
[[nodiscard]] QColor accent(); // warm amber, for highlights
[[nodiscard]] QColor surface(); // cards and sheets
[[nodiscard]] QColor background(); // behind the cards
[[nodiscard]] QColor text();
[[nodiscard]] QColor secondaryText();
[[nodiscard]] QColor hairline();
[[nodiscard]] QColor danger();

// A font of the application's family at a pixel size and weight.
[[nodiscard]] QFont font(int pixelSize, QFont::Weight weight = QFont::Normal);

// The host's mark: a five-sided bastion in a rounded square.
void drawLogo(QPainter &painter, const QRectF &rect, const QColor &background, const QColor &foreground);

// A round avatar with the person's initials on a colour picked from the name.
[[nodiscard]] QPixmap avatar(const QString &name, int size, qreal devicePixelRatio = 1.0);
[[nodiscard]] QString initials(const QString &name);

} // namespace ravelin::hostbrand
