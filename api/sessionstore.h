#pragma once

#include "api/apidata.h"

#include <optional>

class QSettings;

namespace ravelin {

// The session data persisted in the user defaults (a QSettings store chosen by
// the host application) as JSON bytes under "quorApiData".
class SessionStore
{
public:
    static constexpr const char *key = "quorApiData";

    explicit SessionStore(QSettings *settings);

    // The stored session, or nothing (logging "Couldnt find key" or "Couldnt decode object").
    [[nodiscard]] std::optional<APIData> load() const;
    // Encodes and stores the session, then synchronises the store.
    void store(const APIData &data);

    [[nodiscard]] QSettings *settings() const { return m_settings; }

private:
    QSettings *m_settings = nullptr;
};

} // namespace ravelin
