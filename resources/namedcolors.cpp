#include "resources/namedcolors.h"

#include <QHash>

namespace ravelin {

namespace {

struct ColorPair
{
    QColor light;
    QColor dark;
};

// A calm palette: muted status colours that stay readable on white cards in the
// light appearance and on charcoal cards in the dark one.
const QHash<QString, ColorPair> &palette()
{
    static const QHash<QString, ColorPair> colors{
        {ColorNames::labelText, {QColor(0x1F, 0x29, 0x37), QColor(0xE5, 0xE8, 0xEC)}},
        {ColorNames::secondaryLabelText, {QColor(0x6B, 0x77, 0x85), QColor(0x9A, 0xA5, 0xB1)}},
        {ColorNames::viewBackground, {QColor(0xFF, 0xFF, 0xFF), QColor(0x1E, 0x22, 0x28)}},
        {ColorNames::viewBackgroundReverted, {QColor(0x11, 0x18, 0x27), QColor(0xF3, 0xF4, 0xF6)}},
        {ColorNames::groupedBackground, {QColor(0xF1, 0xF3, 0xF6), QColor(0x12, 0x15, 0x19)}},
        {ColorNames::separator, {QColor(0xDD, 0xE1, 0xE6), QColor(0x33, 0x39, 0x41)}},
        {ColorNames::customRed, {QColor(0xD6, 0x4D, 0x4D), QColor(0xEF, 0x6F, 0x6C)}},
        {ColorNames::customGreen, {QColor(0x2F, 0x9E, 0x6E), QColor(0x4C, 0xC3, 0x8A)}},
        {ColorNames::customGray, {QColor(0x9A, 0xA4, 0xB0), QColor(0x6E, 0x78, 0x84)}},
        {ColorNames::customOrange, {QColor(0xE8, 0x8A, 0x3C), QColor(0xF2, 0xA1, 0x5B)}},
        {ColorNames::customYellow, {QColor(0xE3, 0xB9, 0x3A), QColor(0xF0, 0xCD, 0x5E)}},
        {ColorNames::customBlue, {QColor(0x3B, 0x76, 0xC9), QColor(0x63, 0x9C, 0xEB)}},
        {ColorNames::customShadow, {QColor(0xFF, 0xFF, 0xFF), QColor(0x2C, 0x32, 0x3A)}},
        {ColorNames::navigationBar, {QColor(0x1E, 0x3A, 0x5F), QColor(0x16, 0x22, 0x33)}},
        {ColorNames::navigationBarText, {QColor(0xFF, 0xFF, 0xFF), QColor(0xE5, 0xE8, 0xEC)}},
        {ColorNames::accent, {QColor(0x25, 0x63, 0xC4), QColor(0x6C, 0xA6, 0xF5)}},
    };
    return colors;
}

Appearance &currentAppearance()
{
    static Appearance appearance = Appearance::light;
    return appearance;
}

} // namespace

std::optional<QColor> NamedColors::color(const QString &name)
{
    return color(name, appearance());
}

std::optional<QColor> NamedColors::color(const QString &name, Appearance appearance)
{
    const auto found = palette().constFind(name);
    if (found == palette().constEnd())
        return std::nullopt;
    return appearance == Appearance::dark ? found->dark : found->light;
}

QColor NamedColors::color(const QString &name, const QColor &fallback)
{
    return color(name).value_or(fallback);
}

QColor NamedColors::color(const QString &name, Appearance appearance, const QColor &fallback)
{
    return color(name, appearance).value_or(fallback);
}

bool NamedColors::contains(const QString &name)
{
    return palette().contains(name);
}

QStringList NamedColors::names()
{
    QStringList names = palette().keys();
    names.sort();
    return names;
}

Appearance NamedColors::appearance()
{
    return currentAppearance();
}

void NamedColors::setAppearance(Appearance appearance)
{
    currentAppearance() = appearance;
}

} // namespace ravelin
