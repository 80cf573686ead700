#include "runner/report_buffer.h"

#include "runner/channel.h"

#include <ctime>

namespace {

void pauseShortly()
{
    const timespec fiftyMicroseconds = {0, 50 * 1000};
    nanosleep(&fiftyMicroseconds, nullptr);
}

} // namespace

void ReportBuffer::open(int pipe, void (*onFirst)())
{
    m_pipe = pipe;
    m_onFirst = onFirst;
}

void ReportBuffer::flush()
{
    lock();
    writeOut();
    unlock();
}

void ReportBuffer::flushDue()
{
    m_flushIsDue = false;
    flush();
}

void ReportBuffer::flushAfterCrash()
{
    // Another thread may be writing: let it come to its end. If the crash came while this thread
    // held the lock, only whole records are counted in m_used.
    constexpr int Tries = 4000;
    for (int i = 0; i < Tries && !tryLock(); ++i)
        pauseShortly();
    writeOut();
}

void ReportBuffer::lock()
{
    // Contention is rare: the other side is a flush every few milliseconds.
    while (!tryLock())
        pauseShortly();
}

unsigned char* ReportBuffer::room()
{
    if (Size - m_used < protocol::MaxRecord)
        writeOut();
    return m_bytes + m_used;
}

void ReportBuffer::release()
{
    unlock();
    if (!m_flushIsDue.load(std::memory_order_relaxed) && !m_flushIsDue.exchange(true))
        m_onFirst();
}

void ReportBuffer::writeOut()
{
    if (m_used > 0)
        channel::write(m_pipe, m_bytes, m_used);
    m_used = 0;
}
