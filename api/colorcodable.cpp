#include "api/colorcodable.h"

#include <QRandomGenerator>

namespace ravelin {

ColorCodable ColorCodable::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    return ColorCodable{o.number("red"), o.number("green"), o.number("blue"), o.number("alpha")};
}

QJsonObject ColorCodable::encode() const
{
    return QJsonObject{{QStringLiteral("red"), red},
                       {QStringLiteral("green"), green},
                       {QStringLiteral("blue"), blue},
                       {QStringLiteral("alpha"), alpha}};
}

ColorCodable ColorCodable::randomUserColor(QRandomGenerator &random)
{
    // generateDouble() is in [0, 1); scaling to 0.8 keeps the value inside the closed range.
    const double green = 0.2 + random.generateDouble() * 0.8;
    const double blue = 0.2 + random.generateDouble() * 0.8;
    return ColorCodable{0.01, green, blue, 1.0};
}

} // namespace ravelin
