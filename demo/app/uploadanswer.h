#pragma once

#include "api/json.h"

#include <QString>

namespace ravelin {

// The demo deployment's answer to a picture upload: where the picture is stored
// ("uploads/<file name>"), relative to the server's "/files/" folder.
struct UploadAnswer
{
    QString path;

    // {"success": true, "data": {"path": "..."}}; "success" false throws a decoding error.
    [[nodiscard]] static UploadAnswer decode(const json::Value &value);
};

} // namespace ravelin
