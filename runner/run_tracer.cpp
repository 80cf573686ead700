#include "runner/run_tracer.h"

#include "runner/trace_memory.h"

#include <atomic>
#include <cstring>
#include <vector>

namespace run_tracer {

namespace {

using namespace run_trace;

/// What is known of a step's last begin.
struct Begun
{
    std::uint32_t depth = 0;
    std::uint32_t frame = 0; ///< the open step around it
    std::uint64_t count = 0; ///< within that one
};

Area ownArea; // where nothing is shared
Area* area = &ownArea;
std::atomic<Area*> causeArea{&ownArea}; // the same, for other threads
std::vector<Begun>& begun = *new std::vector<Begun>;
std::uint32_t lastId = 1;
std::uint32_t base = 0; ///< depth at which the present sequence began

OpenStep& openAt(std::uint32_t depth)
{
    return area->open[depth < MaxDepth ? depth : MaxDepth - 1];
}

StepBegin beginWithin(const OpenStep& around, std::uint64_t step, std::uint64_t count)
{
    const std::uint64_t* outer = around.begin.passes;
    return {{count, outer[0], outer[1], outer[2]}, step};
}

/// The step's fields are written before the depth or the count that makes them known.
template <typename Value> void publish(Value& target, Value value)
{
    std::atomic_signal_fence(std::memory_order_release);
    target = value;
}

class TextTable
{
public:
    TextTable(char* memory, std::size_t at) : m_memory(memory), m_at(at) {}

    std::uint32_t put(const char* text)
    {
        const std::size_t size = std::strlen(text) + 1;
        std::memcpy(m_memory + m_at, text, size);
        m_at += size;
        return static_cast<std::uint32_t>(m_at - size);
    }

private:
    char* m_memory;
    std::size_t m_at;
};

std::size_t tableSize(const applet_module& module)
{
    return sizeof(Area) + module.step_count * sizeof(StepTexts) +
           module.sequence_count * sizeof(SequenceTexts);
}

std::size_t wholeSize(const applet_module& module)
{
    std::size_t size = tableSize(module);
    for (u32 i = 0; i < module.step_count; ++i)
        size += std::strlen(module.steps[i].id) + 1;
    for (u32 i = 0; i < module.sequence_count; ++i) {
        const applet_sequence& sequence = module.sequences[i];
        size += std::strlen(sequence.id) + 1;
        size += sequence.template_id ? std::strlen(sequence.template_id) + 1 : 0;
    }
    return size;
}

void writeTexts(const applet_module& module, char* memory)
{
    TextTable texts(memory, tableSize(module));
    auto* steps = reinterpret_cast<StepTexts*>(memory + sizeof(Area));
    auto* sequences = reinterpret_cast<SequenceTexts*>(steps + module.step_count);
    for (u32 i = 0; i < module.sequence_count; ++i) {
        const applet_sequence& sequence = module.sequences[i];
        sequences[i].id = texts.put(sequence.id);
        sequences[i].templateId = sequence.template_id ? texts.put(sequence.template_id) : 0;
    }
    for (u32 i = 0; i < module.step_count; ++i)
        steps[i] = {texts.put(module.steps[i].id), module.steps[i].sequence};
}

} // namespace

void open(int file, const applet_module& module)
{
    begun.assign(module.step_count, Begun());
    const std::size_t size = wholeSize(module);
    if (void* memory = trace_memory::map(file, size)) {
        area = static_cast<Area*>(memory);
        causeArea = area;
        writeTexts(module, static_cast<char*>(memory));
    }
    area->stepCount = module.step_count;
    area->sequenceCount = module.sequence_count;
    area->size = static_cast<std::uint32_t>(size);
    area->open[0].begin.step = NoStep;
    area->open[0].id = lastId;
    publish(area->version, Version);
}

void detach()
{
    ownArea = *area;
    area = &ownArea;
    causeArea = area;
}

void begin(u32 step)
{
    Begun& own = begun[step];
    std::uint32_t depth = area->depth;
    // What is open within the step around it has been left by a jump.
    if (own.depth > base && own.depth <= depth + 1 && openAt(own.depth - 1).id == own.frame) {
        depth = own.depth - 1;
        ++own.count;
    } else {
        own.count = 1;
    }
    const OpenStep& around = openAt(depth);
    own.frame = around.id;
    own.depth = ++depth;

    const StepBegin record = beginWithin(around, step, own.count);
    OpenStep& opened = openAt(depth);
    opened.begin = record;
    opened.number = area->begun + 1;
    opened.id = ++lastId;
    publish(area->depth, depth);
    area->recent[area->begun % Remembered] = record;
    publish(area->begun, area->begun + 1);
}

void end(u32 step)
{
    // Steps above it have been left by a jump.
    const std::uint32_t depth = begun[step].depth;
    if (depth > base && depth <= area->depth && openAt(depth).begin.step == step)
        publish(area->depth, depth - 1);
}

std::uint64_t turnsBegun(u32 turnStep)
{
    const std::uint32_t depth = turnStep > 0 ? begun[turnStep - 1].depth : 0;
    if (depth <= base || depth > area->depth || depth >= MaxDepth - 1)
        return 0;
    const OpenStep& loop = openAt(depth);
    const Begun& first = begun[turnStep];
    return loop.begin.step == turnStep - 1 && first.frame == loop.id ? first.count : 0;
}

void enter()
{
    const StepBegin record = beginWithin(openAt(area->depth), NoStep, 1);
    OpenStep& opened = openAt(area->depth + 1);
    opened.begin = record;
    opened.id = ++lastId;
    opened.outerBase = base;
    base = area->depth + 1;
    publish(area->depth, base);
}

void leave()
{
    if (base == 0)
        return;
    const std::uint32_t depth = base - 1;
    base = openAt(base).outerBase < base ? openAt(base).outerBase : 0;
    publish(area->depth, depth);
}

void setCause(Cause cause)
{
    __atomic_store_n(&causeArea.load()->cause, static_cast<std::uint32_t>(cause), __ATOMIC_RELAXED);
}

} // namespace run_tracer
