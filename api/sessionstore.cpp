#include "api/sessionstore.h"

#include "api/debuglog.h"

#include <QSettings>

namespace ravelin {

SessionStore::SessionStore(QSettings *settings)
    : m_settings(settings)
{ }

std::optional<APIData> SessionStore::load() const
{
    const QVariant stored = m_settings->value(QLatin1String(key));
    if (!stored.isValid()) {
        debugLog(lcApi, QStringLiteral("Couldnt find key"));
        return std::nullopt;
    }
    auto data = APIData::fromStoredBytes(stored.toByteArray());
    if (!data)
        debugLog(lcApi, QStringLiteral("Couldnt decode object"));
    return data;
}

void SessionStore::store(const APIData &data)
{
    m_settings->setValue(QLatin1String(key), data.encode());
    m_settings->sync();
}

} // namespace ravelin
