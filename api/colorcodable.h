#pragma once

#include "api/json.h"

#include <QColor>
#include <QJsonObject>

class QRandomGenerator;

namespace ravelin {

// A colour as four channels between 0 and 1.
struct ColorCodable
{
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    [[nodiscard]] QColor toColor() const
    {
        return QColor::fromRgbF(float(red), float(green), float(blue), float(alpha));
    }
    [[nodiscard]] static ColorCodable decode(const json::Value &value);
    [[nodiscard]] QJsonObject encode() const;

    // A user colour: red 0.01, green and blue uniformly random in 0.2...1.0, opaque.
    [[nodiscard]] static ColorCodable randomUserColor(QRandomGenerator &random);

    friend bool operator==(const ColorCodable &, const ColorCodable &) = default;
};

} // namespace ravelin
