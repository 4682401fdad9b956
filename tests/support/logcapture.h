#pragma once

#include "api/debuglog.h"

#include <QRegularExpression>
#include <QStringList>
#include <QtGlobal>

#include <memory>
#include <mutex>

namespace ravelin::test {

// Collects the library's log lines (its "ravelin.*" categories) for the
// lifetime of the object, through Qt's message handler; every message still
// reaches the handler that was installed before.
class LogCapture
{
public:
    LogCapture()
        : m_state(std::make_shared<State>())
    {
        std::lock_guard lock(registryMutex());
        m_outer = std::exchange(active(), m_state);
        m_state->previous = qInstallMessageHandler(&LogCapture::handle);
    }
    ~LogCapture()
    {
        std::lock_guard lock(registryMutex());
        qInstallMessageHandler(m_state->previous);
        active() = m_outer;
    }
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
        return lines().filter(QRegularExpression(u'^' + QRegularExpression::escape(prefix)));
    }

    // How many lines start with the given text.
    [[nodiscard]] int count(const QString &prefix) const { return int(linesStartingWith(prefix).size()); }
    // The start of the line the library logs for a failed fetch of `what` ("tasks", "items", ...).
    [[nodiscard]] static QString failedFetch(const QString &what)
    {
        return QStringLiteral("We got a failure trying to get the %1. The error we got was: ").arg(what);
    }

    // The category each line was written to, in order.
    [[nodiscard]] QStringList categories() const
    {
        std::lock_guard lock(m_state->mutex);
        return m_state->categories;
    }

private:
    struct State
    {
        std::mutex mutex;
        QStringList lines;
        QStringList categories;
        QtMessageHandler previous = nullptr;
    };

    static std::mutex &registryMutex()
    {
        static std::mutex mutex;
        return mutex;
    }
    static std::shared_ptr<State> &active()
    {
        static std::shared_ptr<State> state;
        return state;
    }

    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        std::shared_ptr<State> state;
        {
            std::lock_guard lock(registryMutex());
            state = active();
        }
        if (!state)
            return;
        const QLatin1String category(context.category ? context.category : "");
        if (category.startsWith(QLatin1String("ravelin."))) {
            std::lock_guard lock(state->mutex);
            state->lines.append(message);
            state->categories.append(category);
        }
        if (state->previous)
            state->previous(type, context, message);
    }

    std::shared_ptr<State> m_state;
    std::shared_ptr<State> m_outer;
};

} // namespace ravelin::test
