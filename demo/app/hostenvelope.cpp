#include "demo/app/hostenvelope.h"

namespace ravelin::hostenvelope {

json::Value data(const json::Value &answer)
{
    const json::Object envelope = answer.toObject();
    if (!envelope.boolean("success")) {
        const QString message
            = envelope.stringIfPresent("message").value_or(QStringLiteral("The server refused the request"));
        throw json::DecodingError(json::DecodingError::Kind::dataCorrupted, message);
    }
    return envelope.value("data");
}

} // namespace ravelin::hostenvelope
