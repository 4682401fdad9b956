#include "views/focusring.h"

#include "resources/namedcolors.h"

namespace ravelin::FocusRing {

QColor color()
{
    return NamedColors::color(ColorNames::accent, QColor(0x25, 0x63, 0xC4));
}

QColor onAccent()
{
    return NamedColors::color(ColorNames::labelText, QColor(0x1F, 0x29, 0x37));
}

QColor onBar()
{
    return NamedColors::color(ColorNames::navigationBarText, QColor(Qt::white));
}

} // namespace ravelin::FocusRing
