#pragma once

#include <QColor>

namespace ravelin {

// How the control with the keyboard focus is marked: a ring (or a border) in a
// colour that stands out from the surface, in the light and in the dark
// appearance alike.
namespace FocusRing {

// Line width of a ring drawn around a control.
inline constexpr int width = 2;

// On cards and screen backgrounds: the accent.
[[nodiscard]] QColor color();
// On a surface filled with the accent: the label colour.
[[nodiscard]] QColor onAccent();
// On the navigation bar: the bar's text colour.
[[nodiscard]] QColor onBar();

} // namespace FocusRing

} // namespace ravelin
