#pragma once

#include "api/json.h"

namespace ravelin::hostenvelope {

// The "data" member of a demo deployment answer, {"success": true, "data": ...}.
// An answer with "success" false throws a decoding error whose description is
// the server's "message".
[[nodiscard]] json::Value data(const json::Value &answer);

} // namespace ravelin::hostenvelope
