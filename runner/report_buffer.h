#pragma once

#include "standalone/runtime/protocol.h"

#include <atomic>
#include <cstddef>

/// Collects records and writes them to the report channel in large pieces. Any thread.
///
/// Its lock is a flag and its memory is its own, so that a signal handler can write out what a
/// crashed step left behind.
class ReportBuffer
{
public:
    static constexpr std::size_t Size = 32 * 1024;

    /// @p onFirst is called, on the appending thread, when records wait and no flush is due yet.
    void open(int pipe, void (*onFirst)());

    /// Writes out what waits.
    void flush();

    /// Starts the flush that onFirst asked for: records from now on ask for another one.
    void flushDue();

    /// For a signal handler: writes what waits, even if the lock can't be had for long.
    void flushAfterCrash();

    /// Holds the buffer while one or more records are appended.
    class Appending
    {
    public:
        explicit Appending(ReportBuffer& buffer) : m_buffer(buffer) { m_buffer.lock(); }
        ~Appending() { m_buffer.release(); }
        Appending(const Appending&) = delete;
        Appending& operator=(const Appending&) = delete;

        /// Where the next record goes: room for protocol::MaxRecord bytes.
        unsigned char* room() { return m_buffer.room(); }
        void add(std::size_t size) { m_buffer.m_used += size; }

    private:
        ReportBuffer& m_buffer;
    };

private:
    void lock();
    bool tryLock() { return !m_locked.test_and_set(std::memory_order_acquire); }
    void unlock() { m_locked.clear(std::memory_order_release); }
    unsigned char* room();
    void release();
    void writeOut();

    unsigned char m_bytes[Size];
    std::size_t m_used = 0;
    int m_pipe = -1;
    void (*m_onFirst)() = nullptr;
    std::atomic_flag m_locked = ATOMIC_FLAG_INIT;
    std::atomic<bool> m_flushIsDue{false};
};
