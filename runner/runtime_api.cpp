#include "runner/runtime_api.h"

#include "runner/checksums.h"
#include "runner/control.h"
#include "runner/requests.h"
#include "runner/run_tracer.h"
#include "runner/step_failures.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace runtime_api {

namespace {

ReportBuffer* reportBuffer = nullptr;
const applet_module* current = nullptr;
StepFailures& failures = *new StepFailures;

void report(u32 step, double progress)
{
    if (step >= current->step_count)
        return;
    if (progress == 100.0)
        run_tracer::end(step);
    else if (progress == 0.0)
        run_tracer::begin(step);
    reportBuffer->report(step, progress, 0);
}

/// A step that failed doesn't come to 100: its end is another report than a good one, wherever
/// reports of equal progress are taken as one.
void fail(u32 step, int result, s64 turn)
{
    constexpr double Progress = 99.0;
    if (step >= current->step_count)
        return;
    const std::string line =
        failures.add(step, result, turn, run_tracer::turnsBegun(current->steps[step].turn_step));
    run_tracer::end(step);
    reportBuffer->report(step, Progress, result);
    if (!line.empty())
        log(ReportBuffer::ErrorLevel, line.c_str());
}

void enter(u32 sequence)
{
    run_tracer::enter();
    reportBuffer->changeSequence(sequence, false);
}

void leave(u32 sequence)
{
    run_tracer::leave();
    reportBuffer->changeSequence(sequence, true);
}

void logFormatted(int level, const char* format, va_list arguments)
{
    // Formatted before the buffer is held: a bad argument of the applet crashes here.
    char text[protocol::MaxText + 1];
    const int size = std::vsnprintf(text, sizeof text, format, arguments);
    if (size < 0) {
        log(ReportBuffer::ErrorLevel, (std::string("日志文本无法格式化: ") + format).c_str());
        return;
    }
    const auto whole = static_cast<std::size_t>(size);
    reportBuffer->log(level, text, std::min(whole, protocol::MaxText), whole);
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

s64 ask(int question, const applet_text* texts, u32 count, char* answer, size_t room)
{
    if (question < protocol::ReadVariable || question > protocol::ShowNotice)
        return requests::Refused;
    protocol::Texts copies;
    for (u32 i = 0; i < count; ++i)
        copies.emplace_back(texts[i].bytes, texts[i].size);
    return requests::ask(*reportBuffer, static_cast<protocol::RequestKind>(question), copies,
                         answer, room);
}

u32 crc(const char* name, int width, const u8* data, size_t size)
{
    u32 value = 0;
    if (!checksums::crc(name, width, data, size, value))
        log(ReportBuffer::ErrorLevel,
            (std::string("未知的校验算法: ") + (name ? name : "")).c_str());
    return value;
}

} // namespace

void bind(ReportBuffer& reports)
{
    reportBuffer = &reports;
}

void setModule(const applet_module& module)
{
    current = &module;
    reportBuffer->setModule(module);
    failures.setModule(module);
}

const applet_runtime_api& table()
{
    static const applet_runtime_api api = {APPLET_RUNTIME_VERSION,
                                           control::stopFlag(),
                                           report,
                                           fail,
                                           enter,
                                           leave,
                                           logFormatted,
                                           delay,
                                           now,
                                           ask,
                                           crc};
    return api;
}

void logFailureTotals()
{
    for (const std::string& line : failures.totals())
        log(ReportBuffer::ErrorLevel, line.c_str());
}

void log(int level, const char* text)
{
    reportBuffer->log(level, text, std::strlen(text));
}

} // namespace runtime_api
