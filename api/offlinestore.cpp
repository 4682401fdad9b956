#include "api/offlinestore.h"

namespace ravelin {

Q_LOGGING_CATEGORY(lcOffline, "ravelin.offline")

} // namespace ravelin
