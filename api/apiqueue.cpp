#include "api/apiqueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QRunnable>
#include <QThread>

// Under ThreadSanitizer (GCC and Clang) a hand-over is announced as a release
// by the thread that gives and an acquire by the thread that takes, both on the
// address of the object handed over. Elsewhere the announcements are nothing.
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

// One piece of work for the main thread, posted to the inbox. The event itself
// is the address of the hand-over: the taking side reads nothing before it.
class Delivery final : public QEvent
{
public:
    explicit Delivery(std::function<void()> work)
        : QEvent(eventType())
        , m_work(std::move(work))
    { }

    static QEvent::Type eventType()
    {
        static const auto type = QEvent::Type(QEvent::registerEventType());
        return type;
    }

    void run() const { m_work(); }

private:
    std::function<void()> m_work;
};

class Inbox final : public QObject
{
protected:
    void customEvent(QEvent *event) override
    {
        RAVELIN_TAKE_OVER(event);
        if (event->type() == Delivery::eventType())
            static_cast<const Delivery *>(event)->run();
    }
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
    auto *delivery = new Delivery(std::move(work));
    QObject *inbox = shared().m_inbox.get();
    RAVELIN_HAND_OVER(delivery);
    QCoreApplication::postEvent(inbox, delivery);
}

} // namespace ravelin
