#pragma once

#include <QString>
#include <QThreadPool>

#include <functional>
#include <memory>

class QObject;

namespace ravelin {

// A serial queue: work items run one after another on one worker thread, in the
// order they were added. Answers are decoded here before they reach the main thread.
//
// The queue's hand-overs (work into the queue, results back to the main thread,
// the end of the work to waitForDone()) are made visible to ThreadSanitizer,
// which does not see inside Qt: work and its end are announced to it (only in
// such a build), results wait for the main thread under a lock it sees. It then
// checks the library's own accesses against the order they really have.
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

    // Runs `work` on the main thread, from its event loop, after everything the
    // calling thread did before the call. Work given while there is no
    // application (or after it is gone) never runs.
    static void deliverToMainThread(std::function<void()> work);

private:
    class Job;

    QString m_label;
    QThreadPool m_pool;
    // Receives the deliveries on the main thread (the shared queue's takes them all).
    std::unique_ptr<QObject> m_inbox;
};

} // namespace ravelin
