#pragma once

#include <QString>
#include <QThreadPool>

#include <functional>

namespace ravelin {

// A serial queue: work items run one after another on one worker thread, in the
// order they were added. Answers are decoded here before they reach the main thread.
class ApiQueue
{
public:
    explicit ApiQueue(const QString &label);
    ~ApiQueue();
    ApiQueue(const ApiQueue &) = delete;
    ApiQueue &operator=(const ApiQueue &) = delete;

    // The shared queue "api.queue", created on first use.
    [[nodiscard]] static ApiQueue &shared();

    [[nodiscard]] QString label() const { return m_label; }
    void async(std::function<void()> work);
    // Blocks until every queued item has run (for shutdown and tests).
    void waitForDone();

private:
    QString m_label;
    QThreadPool m_pool;
};

} // namespace ravelin
