#include "runner/report_buffer.h"

#include "runner/channel.h"
#include "runner/run_tracer.h"

#include <cstring>
#include <ctime>

void ReportBuffer::open(int pipe, void (*onFirst)())
{
    m_pipe = pipe;
    m_onFirst = onFirst;
}

void ReportBuffer::setModule(const applet_module& module)
{
    m_module = &module;
    m_waiting.setSteps(module.step_count);
    m_sequenceTexts.assign(module.sequence_count, 0);
    m_templateTexts.assign(module.sequence_count, 0);
    m_stepTexts.assign(module.step_count, 0);
}

void ReportBuffer::detach()
{
    m_pipe = -1;
    m_flushIsDue = true; // nobody to ask
    unlock();            // held, maybe, by a thread that isn't here
}

void ReportBuffer::changeSequence(u32 sequence, bool isEnd)
{
    lock();
    encodeWaiting();
    const std::uint32_t index = sequenceIndex(sequence);
    if (const char* templateId = m_module->sequences[sequence].template_id) {
        const std::uint32_t owner = announced(m_templateTexts[sequence], templateId);
        m_used += protocol::putTemplateSequence(room(), owner, index, isEnd);
    } else {
        m_used += protocol::putSequence(room(), index, isEnd);
    }
    release();
}

void ReportBuffer::log(int level, const char* text, std::size_t size, std::size_t whole)
{
    lock();
    encodeWaiting();
    m_used += protocol::putLog(room(), level, text, size, whole);
    release();
}

void ReportBuffer::request(std::uint32_t id, protocol::RequestKind kind,
                           const protocol::Texts& texts)
{
    lock();
    encodeWaiting();
    m_used += protocol::putRequest(room(), id, kind, texts);
    release();
    flush();
}

void ReportBuffer::end(protocol::EndReason reason)
{
    lock();
    encodeWaiting();
    m_used += protocol::putEnd(room(), reason);
    writeOut();
    m_pipe = -1; // a thread of the applet may still report: nothing comes behind the end
    unlock();
}

void ReportBuffer::flush()
{
    lock();
    encodeWaiting();
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
    // If the crash came while this thread held the lock, only whole records are counted. One that
    // writes waits for the editor, however long: records that interleave are none.
    if (m_holder.load(std::memory_order_relaxed) != thisThread())
        lock();
    encodeWaiting();
    writeOut();
}

void ReportBuffer::pauseShortly()
{
    const timespec fiftyMicroseconds = {0, 50 * 1000};
    nanosleep(&fiftyMicroseconds, nullptr);
}

void ReportBuffer::askForFlush()
{
    if (!m_flushIsDue.exchange(true))
        m_onFirst();
}

/// Where the next record goes: room for protocol::MaxRecord bytes.
unsigned char* ReportBuffer::room()
{
    if (Size - m_used < protocol::MaxRecord)
        writeOut();
    return m_bytes + m_used;
}

void ReportBuffer::encodeWaiting()
{
    if (m_waiting.isEmpty())
        return;
    const StepReport* reports = m_waiting.sorted();
    for (std::size_t i = 0; i < m_waiting.count(); ++i) {
        const applet_step& step = m_module->steps[reports[i].step];
        const std::uint32_t sequence = sequenceIndex(step.sequence);
        const std::uint32_t block = announced(m_stepTexts[reports[i].step], step.id);
        m_used +=
            protocol::putBlock(room(), sequence, block, reports[i].progress, reports[i].result);
    }
    m_waiting.clear();
}

void ReportBuffer::writeOut()
{
    if (m_used > 0 && m_pipe >= 0 && !channel::write(m_pipe, m_bytes, m_used)) {
        run_tracer::setCause(run_trace::ChannelLost);
        channel::leave(1);
    }
    m_used = 0;
}

/// The index of a text, which is announced first if need be. @p slot is its place in its table.
std::uint32_t ReportBuffer::announced(std::uint32_t& slot, const char* text)
{
    if (slot == 0) {
        m_used += protocol::putText(room(), m_sentTexts, text, std::strlen(text));
        slot = ++m_sentTexts;
    }
    return slot - 1;
}

std::uint32_t ReportBuffer::sequenceIndex(u32 sequence)
{
    return announced(m_sequenceTexts[sequence], m_module->sequences[sequence].id);
}
