#include "demo/app/uploadanswer.h"

#include "demo/app/hostenvelope.h"

namespace ravelin {

UploadAnswer UploadAnswer::decode(const json::Value &value)
{
    return UploadAnswer{hostenvelope::data(value).toObject().string("path")};
}

} // namespace ravelin
