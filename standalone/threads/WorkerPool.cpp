#include "standalone/threads/WorkerPool.h"

#include <system_error>

namespace standalone {

WorkerPool::WorkerPool(std::size_t mostThreads) : m_mostThreads(mostThreads) {}

WorkerPool::~WorkerPool()
{
    waitForDone();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isClosing = true;
    }
    m_hasWork.notify_all();
    for (std::thread& thread : m_threads)
        thread.join();
}

bool WorkerPool::start(std::function<void()> task)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_waiting.push_back(std::move(task));
    const bool allAreBusy = m_working + m_waiting.size() > m_threads.size();
    if (allAreBusy && m_threads.size() < m_mostThreads) {
        try {
            m_threads.emplace_back(&WorkerPool::work, this);
        } catch (const std::system_error&) {
            if (m_threads.empty()) {
                m_waiting.pop_back();
                return false;
            }
        }
    }
    m_hasWork.notify_one();
    return true;
}

void WorkerPool::waitForDone()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_isDone.wait(lock, [this] { return m_waiting.empty() && m_working == 0; });
}

void WorkerPool::work()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_hasWork.wait(lock, [this] { return m_isClosing || !m_waiting.empty(); });
        if (m_waiting.empty())
            return;
        std::function<void()> task = std::move(m_waiting.front());
        m_waiting.pop_front();
        ++m_working;
        lock.unlock();
        task();
        task = nullptr; // what it holds goes before the work counts as done
        lock.lock();
        --m_working;
        if (m_waiting.empty() && m_working == 0)
            m_isDone.notify_all();
    }
}

} // namespace standalone
