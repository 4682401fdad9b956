#pragma once

#include "api/debuglog.h"

#include <QStringList>

#include <memory>
#include <mutex>

namespace ravelin::test {

// Collects the library's debug log lines for the lifetime of the object.
class LogCapture
{
public:
    LogCapture()
        : m_state(std::make_shared<State>())
    {
        m_previous = setLogSink([state = m_state](const QString &line) {
            std::lock_guard lock(state->mutex);
            state->lines.append(line);
        });
    }
    ~LogCapture() { setLogSink(m_previous); }
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    [[nodiscard]] QStringList lines() const
    {
        std::lock_guard lock(m_state->mutex);
        return m_state->lines;
    }

    // Lines that start with the given text.
    [[nodiscard]] QStringList linesStartingWith(const QString &prefix) const
    {
        QStringList out;
        for (const QString &line : lines()) {
            if (line.startsWith(prefix))
                out.append(line);
        }
        return out;
    }

    void clear()
    {
        std::lock_guard lock(m_state->mutex);
        m_state->lines.clear();
    }

private:
    struct State
    {
        std::mutex mutex;
        QStringList lines;
    };
    std::shared_ptr<State> m_state;
    LogSink m_previous;
};

} // namespace ravelin::test
