#include "api/managererrors.h"

namespace ravelin {

QString ManagerErrors::localizedDescription() const
{
    return QStringLiteral("The operation couldn’t be completed. (Ravelin.ManagerErrors error %1.)").arg(int(m_kind));
}

std::optional<ManagerErrors> ManagerErrors::fromStatusCode(int status)
{
    if (status == 401)
        return ManagerErrors(Kind::invalidToken);
    if (status == 404)
        return ManagerErrors(Kind::apiRouteError);
    if (status < 200 || status > 299)
        return invalidStatusCode(status);
    return std::nullopt;
}

} // namespace ravelin
