#pragma once

#include "protocol/protocol.h"
#include "runner/applet_module.h"
#include "runner/waiting_reports.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// Collects records in the order of their coming and writes them to the report channel in large
/// pieces. Step reports wait in a table where equal ones are one; anything else that is appended
/// comes behind those that wait. Any thread.
///
/// Its lock is an atomic number, the thread that holds it, and its memory is its own, so that a
/// signal handler can write out what a crashed step left behind.
class ReportBuffer
{
public:
    static constexpr std::size_t Size = 32 * 1024;
    static constexpr int ErrorLevel = 3; ///< of a log line that tells of a fault

    /// @p onFirst is called, on the appending thread, when records wait and no flush is due yet.
    void open(int pipe, void (*onFirst)());
    /// Whose steps and sequences the reports are about; it lives to the end of the process.
    void setModule(const applet_module& module);
    /// In a process that the applet has forked: nothing is written any more.
    void detach();

    void report(u32 step, double progress, int result)
    {
        lock();
        if (m_waiting.isFull())
            encodeWaiting();
        m_waiting.put(step, progress, result);
        release();
    }
    void changeSequence(u32 sequence, bool isEnd);
    /// @p whole as protocol::putLog takes it.
    void log(int level, const char* text, std::size_t size, std::size_t whole = 0);
    void request(std::uint32_t id, protocol::RequestKind kind, const protocol::Texts& texts);
    /// Writes all out, the end last; nothing is written any more afterwards.
    void end(protocol::EndReason reason);

    /// Writes out what waits.
    void flush();
    /// Starts the flush that onFirst asked for: records from now on ask for another one.
    void flushDue();
    /// For a signal handler: the same, also on a thread that was inside. What another thread is
    /// writing comes before.
    void flushAfterCrash();

private:
    void lock()
    {
        // Contention is rare: the other side is a flush every few milliseconds.
        while (!tryLock())
            pauseShortly();
    }
    bool tryLock()
    {
        std::uintptr_t nobody = 0;
        return m_holder.compare_exchange_strong(nobody, thisThread(), std::memory_order_acquire,
                                                std::memory_order_relaxed);
    }
    void unlock() { m_holder.store(0, std::memory_order_release); }
    /// Another number for each thread; not 0.
    static std::uintptr_t thisThread()
    {
        static thread_local char own;
        return reinterpret_cast<std::uintptr_t>(&own);
    }
    void release()
    {
        unlock();
        if (!m_flushIsDue.load(std::memory_order_relaxed))
            askForFlush();
    }
    static void pauseShortly();
    void askForFlush();

    unsigned char* room();
    void encodeWaiting();
    void writeOut();
    std::uint32_t announced(std::uint32_t& slot, const char* text);
    std::uint32_t sequenceIndex(u32 sequence);

    WaitingReports m_waiting;
    unsigned char m_bytes[Size];
    std::size_t m_used = 0;
    int m_pipe = -1;
    void (*m_onFirst)() = nullptr;
    std::atomic<std::uintptr_t> m_holder{0};
    std::atomic<bool> m_flushIsDue{false};

    /// The text indices of the protocol plus one, given out at first use; 0: not sent yet.
    const applet_module* m_module = nullptr;
    std::uint32_t m_sentTexts = 0;
    std::vector<std::uint32_t> m_sequenceTexts;
    std::vector<std::uint32_t> m_templateTexts;
    std::vector<std::uint32_t> m_stepTexts;
};
