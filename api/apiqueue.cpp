#include "api/apiqueue.h"

namespace ravelin {

ApiQueue::ApiQueue(const QString &label)
    : m_label(label)
{
    m_pool.setObjectName(label);
    m_pool.setMaxThreadCount(1);
    m_pool.setExpiryTimeout(-1);
}

ApiQueue::~ApiQueue()
{
    m_pool.waitForDone();
}

ApiQueue &ApiQueue::shared()
{
    static ApiQueue s_queue(QStringLiteral("api.queue"));
    return s_queue;
}

void ApiQueue::async(std::function<void()> work)
{
    m_pool.start(std::move(work));
}

void ApiQueue::waitForDone()
{
    m_pool.waitForDone();
}

} // namespace ravelin
