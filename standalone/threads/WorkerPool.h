#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace standalone {

/// A few threads that work off a queue, in its order. Threads start when there is work for them and
/// stay. Standard mutexes throughout, so that a thread sanitizer sees every hand-over. Any thread
/// may call.
class WorkerPool
{
public:
    explicit WorkerPool(std::size_t mostThreads);
    /// Waits for all work, then for the threads.
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /// False if there is no thread and none to be had: the task is not taken.
    bool start(std::function<void()> task);
    /// Returns when nothing waits and nothing is being worked on. Not from a task.
    void waitForDone();

private:
    void work();

    const std::size_t m_mostThreads;
    std::mutex m_mutex; ///< guards what follows
    std::condition_variable m_hasWork;
    std::condition_variable m_isDone;
    std::deque<std::function<void()>> m_waiting;
    std::size_t m_working = 0;
    bool m_isClosing = false;
    std::vector<std::thread> m_threads;
};

} // namespace standalone
