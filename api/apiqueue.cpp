#include "api/apiqueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QRunnable>
#include <QThread>

#include <deque>
#include <mutex>

// Under ThreadSanitizer (GCC and Clang) a job's hand-over to the pool is
// announced as a release by the thread that gives and an acquire by the thread
// that takes, both on the address of the job. Elsewhere the announcements are
// nothing.
#if defined(__SANITIZE_THREAD__)
#define RAVELIN_THREAD_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define RAVELIN_THREAD_SANITIZER 1
#endif
#endif

#ifdef RAVELIN_THREAD_SANITIZER
extern "C" {
void __tsan_acquire(void *address);
void __tsan_release(void *address);
}
#define RAVELIN_HAND_OVER(address) __tsan_release(static_cast<void *>(address))
#define RAVELIN_TAKE_OVER(address) __tsan_acquire(static_cast<void *>(address))
#else
#define RAVELIN_HAND_OVER(address) static_cast<void>(address)
#define RAVELIN_TAKE_OVER(address) static_cast<void>(address)
#endif

namespace ravelin {

namespace {

// Receives the work for the main thread. Each piece is kept in the inbox's own
// list, under a lock the sanitizer sees, and announced by an event of Qt's own
// making (a copy of a prototype, allocated inside Qt): the event is read by
// every application-wide event filter before it reaches the inbox, and nothing
// of it is written by the library's code on the giving thread. One event per
// piece, posted under the lock, so the pieces run in the order they were given,
// each from the event posted for it.
class Inbox final : public QObject
{
public:
    void post(std::function<void()> work)
    {
        std::lock_guard lock(m_mutex);
        m_work.push_back(std::move(work));
        QCoreApplication::postEvent(this, prototype().clone());
    }

protected:
    void customEvent(QEvent *event) override
    {
        if (event->type() != prototype().type())
            return;
        std::function<void()> work;
        {
            std::lock_guard lock(m_mutex);
            if (m_work.empty())
                return;
            work = std::move(m_work.front());
            m_work.pop_front();
        }
        work();
    }

private:
    static const QEvent &prototype()
    {
        static const QEvent s_prototype{QEvent::Type(QEvent::registerEventType())};
        return s_prototype;
    }

    std::mutex m_mutex;
    std::deque<std::function<void()>> m_work;
};

} // namespace

// One piece of work for the queue's thread, handed to the pool as it is; it is
// the address of the hand-over, and its end is announced on the queue's.
class ApiQueue::Job final : public QRunnable
{
public:
    Job(ApiQueue *queue, std::function<void()> work)
        : m_queue(queue)
        , m_work(std::move(work))
    { }

    void run() override
    {
        RAVELIN_TAKE_OVER(this);
        m_work();
        RAVELIN_HAND_OVER(m_queue);
    }

private:
    ApiQueue *m_queue = nullptr;
    std::function<void()> m_work;
};

ApiQueue::ApiQueue(const QString &label)
    : m_label(label)
    , m_inbox(std::make_unique<Inbox>())
{
    m_pool.setObjectName(label);
    m_pool.setMaxThreadCount(1);
    m_pool.setExpiryTimeout(-1);
    // The inbox belongs to the main thread, wherever the queue was first asked for.
    if (const QCoreApplication *app = QCoreApplication::instance(); app && app->thread() != QThread::currentThread())
        m_inbox->moveToThread(app->thread());
}

ApiQueue::~ApiQueue()
{
    waitForDone();
}

ApiQueue &ApiQueue::shared()
{
    static ApiQueue s_queue(QStringLiteral("api.queue"));
    // The work still queued when the application goes runs before the process
    // tears down its statics, which that work may use (the queue's settings).
    static const bool s_drainedOnExit = [] {
        qAddPostRoutine([] { s_queue.waitForDone(); });
        return true;
    }();
    Q_UNUSED(s_drainedOnExit);
    return s_queue;
}

void ApiQueue::async(std::function<void()> work)
{
    auto *job = new Job(this, std::move(work));
    RAVELIN_HAND_OVER(job);
    m_pool.start(job);
}

void ApiQueue::waitForDone()
{
    m_pool.waitForDone();
    RAVELIN_TAKE_OVER(this);
}

void ApiQueue::deliverToMainThread(std::function<void()> work)
{
    if (!QCoreApplication::instance())
        return;
    static_cast<Inbox *>(shared().m_inbox.get())->post(std::move(work));
}

} // namespace ravelin
