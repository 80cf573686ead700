#include "standalone/runtime/TraceFile.h"

#include <algorithm>
#include <cstring>

namespace standalone {

using namespace run_trace;

std::string TraceFile::textAt(std::size_t at) const
{
    constexpr std::size_t Longest = 256; // identifiers are uuids
    char text[Longest + 1] = {};
    for (std::size_t i = 0; i < Longest && readAt(at + i, text + i, 1) && text[i] != 0; ++i) {
    }
    return text;
}

std::optional<TracedStep> TraceFile::step(const Area& area, const StepBegin& begin) const
{
    if (begin.step >= area.stepCount)
        return std::nullopt;
    const std::size_t steps = sizeof(Area);
    const std::size_t sequences = steps + area.stepCount * sizeof(StepTexts);
    StepTexts texts = {};
    SequenceTexts sequence = {};
    if (!readAt(steps + begin.step * sizeof texts, &texts, sizeof texts) ||
        texts.sequence >= area.sequenceCount ||
        !readAt(sequences + texts.sequence * sizeof sequence, &sequence, sizeof sequence))
        return std::nullopt;
    TracedStep traced;
    traced.stepId = textAt(texts.id);
    traced.sequenceId = textAt(sequence.id);
    if (sequence.templateId != 0)
        traced.templateId = textAt(sequence.templateId);
    traced.passes.assign(std::begin(begin.passes), std::end(begin.passes));
    return traced;
}

RunTrace TraceFile::read() const
{
    RunTrace trace;
    Area area;
    if (!readAt(0, &area, sizeof area))
        return trace;
    trace.cause = area.cause <= ProcessLimit ? static_cast<Cause>(area.cause) : NoCause;
    trace.endedCount = area.endedCount;
    trace.survivorCount = area.survivorCount;
    for (std::uint32_t i = 0; i < std::min(area.endedCount, MaxEnded); ++i) {
        const char* name = area.ended[i].name;
        trace.ended.push_back(
            {std::string(name, strnlen(name, sizeof area.ended[i].name)), area.ended[i].pid});
    }
    if (area.version != Version)
        return trace;
    trace.hasBegun = true;

    const OpenStep* open = nullptr;
    for (std::uint32_t depth = std::min(area.depth, MaxDepth - 1); depth > 0 && !open; --depth) {
        if (area.open[depth].begin.step != NoStep)
            open = &area.open[depth];
    }
    if (open)
        trace.running = step(area, open->begin);
    for (std::uint64_t back = 0; back < std::min<std::uint64_t>(area.begun, Remembered); ++back) {
        const std::uint64_t number = area.begun - back;
        if ((open && number == open->number) || trace.before.size() == StepsBefore)
            continue;
        if (auto traced = step(area, area.recent[(number - 1) % Remembered]))
            trace.before.push_back(std::move(*traced));
    }
    return trace;
}

} // namespace standalone
