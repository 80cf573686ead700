#include "runner/runtime_api.h"

#include "runner/control.h"

#include <cstdio>
#include <cstring>
#include <vector>

namespace runtime_api {

namespace {

/// The text indices of the protocol, given out at first use; 0 stands for not sent yet.
struct TextIndices
{
    std::uint32_t sent = 0;
    std::vector<std::uint32_t> sequences;
    std::vector<std::uint32_t> templates;
    std::vector<std::uint32_t> steps;
};

ReportBuffer* reportBuffer = nullptr;
const applet_module* current = nullptr;
TextIndices indices;

/// The index of a text, which is announced first if need be. @p slot is its place in the table.
std::uint32_t announced(ReportBuffer::Appending& records, std::uint32_t& slot, const char* text)
{
    if (slot == 0) {
        records.add(protocol::putText(records.room(), indices.sent, text, std::strlen(text)));
        slot = ++indices.sent;
    }
    return slot - 1;
}

std::uint32_t sequenceIndex(ReportBuffer::Appending& records, u32 sequence)
{
    return announced(records, indices.sequences[sequence], current->sequences[sequence].id);
}

void report(u32 step, double progress, int result)
{
    if (step >= current->step_count)
        return;
    ReportBuffer::Appending records(*reportBuffer);
    const applet_step& entry = current->steps[step];
    const std::uint32_t sequence = sequenceIndex(records, entry.sequence);
    const std::uint32_t block = announced(records, indices.steps[step], entry.id);
    records.add(protocol::putBlock(records.room(), sequence, block, progress, result));
}

void changeSequence(u32 sequence, bool isEnd)
{
    ReportBuffer::Appending records(*reportBuffer);
    const std::uint32_t index = sequenceIndex(records, sequence);
    const char* templateId = current->sequences[sequence].template_id;
    if (!templateId) {
        records.add(protocol::putSequence(records.room(), index, isEnd));
        return;
    }
    const std::uint32_t owner = announced(records, indices.templates[sequence], templateId);
    records.add(protocol::putTemplateSequence(records.room(), owner, index, isEnd));
}

void enter(u32 sequence)
{
    changeSequence(sequence, false);
}

void leave(u32 sequence)
{
    changeSequence(sequence, true);
}

void logFormatted(int level, const char* format, va_list arguments)
{
    // Formatted before the buffer is held: a bad argument of the applet crashes here.
    char text[protocol::MaxText];
    if (std::vsnprintf(text, sizeof text, format, arguments) >= 0)
        log(level, text);
}

int delay(s64 milliseconds)
{
    reportBuffer->flush();
    return control::wait(milliseconds) ? 1 : 0;
}

s64 now()
{
    return control::now();
}

} // namespace

void bind(ReportBuffer& reports)
{
    reportBuffer = &reports;
}

void setModule(const applet_module& module)
{
    current = &module;
    indices.sequences.assign(module.sequence_count, 0);
    indices.templates.assign(module.sequence_count, 0);
    indices.steps.assign(module.step_count, 0);
}

const applet_runtime_api& table()
{
    static const applet_runtime_api api = {APPLET_RUNTIME_VERSION,
                                           control::stopFlag(),
                                           report,
                                           enter,
                                           leave,
                                           logFormatted,
                                           delay,
                                           now};
    return api;
}

void log(int level, const char* text)
{
    ReportBuffer::Appending records(*reportBuffer);
    records.add(protocol::putLog(records.room(), level, text, std::strlen(text)));
}

} // namespace runtime_api
