#pragma once

#include <QFont>
#include <QSize>
#include <QString>

namespace ravelin {

// The worker's text size. The screens' sizes are designed for body text of
// 9 points; when the application's font is larger (the worker's setting, or a
// host that enlarges it), every designed text size grows in the same
// proportion, and so do the boxes that hold text (cards, rows, bars), so that
// nothing is cut off. A smaller font keeps the designed sizes.
namespace TextScale {

inline constexpr qreal designPointSize = 9.0;

// The application font's size over the designed one; never below 1.
[[nodiscard]] qreal factor();

// A designed length in pixels at the current text size.
[[nodiscard]] int scaled(int designPixels);
[[nodiscard]] qreal scaled(qreal designPixels);
[[nodiscard]] QSize scaled(QSize designSize);

// `base` at a designed pixel size (scaled) and weight.
[[nodiscard]] QFont font(const QFont &base, int designPixels, QFont::Weight weight = QFont::Normal);

// "font-size: Npx;" for a style sheet, at a designed pixel size.
[[nodiscard]] QString styleSize(int designPixels);

} // namespace TextScale

} // namespace ravelin
