#include "runner/channel.h"
#include "runner/control.h"
#include "runner/crash_guard.h"
#include "runner/limits.h"
#include "runner/module.h"
#include "runner/run_tracer.h"
#include "runner/runtime_api.h"
#include "runner/standard_output.h"
#include "runner/supervisor.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

enum ExitCode : int { Success = 0, BadUsage = 2, BadModule = 3, NoSequence = 4, NoProcess = 5 };

ReportBuffer reports;

[[noreturn]] void fail(ExitCode code, const std::string& text)
{
    runtime_api::log(ReportBuffer::ErrorLevel, text.c_str());
    reports.flush();
    channel::leave(code);
}

/// By errno; nothing listens to reports yet.
[[noreturn]] void failToStart()
{
    std::fprintf(stderr, "运行进程启动失败: %s\n", std::strerror(errno));
    channel::leave(NoProcess);
}

const applet_sequence* findSequence(const applet_module& module, const std::string& id)
{
    for (u32 i = 0; i < module.sequence_count; ++i) {
        const applet_sequence& sequence = module.sequences[i];
        if (!sequence.template_id && sequence.run && id == sequence.id)
            return &sequence;
    }
    return nullptr;
}

} // namespace

/// applet_runner MODULE MEMORY_LIMIT REPORT_PIPE COMMAND_PIPE TRACE_FILE
/// The limit is in bytes, 0 for none. The sequence comes with the start command. The exit code is 0
/// after an end record only. This process becomes the supervisor; its child runs the applet.
int main(int argc, char** argv)
{
    if (argc != 6) {
        std::fprintf(stderr, "usage: %s MODULE MEMORY_LIMIT REPORT_PIPE COMMAND_PIPE TRACE_FILE\n",
                     argv[0]);
        return BadUsage;
    }
    supervisor::Duty duty;
    duty.memoryLimit = std::strtoull(argv[2], nullptr, 10);
    limits::setMemory(duty.memoryLimit);
    const int reportPipe = channel::adopt(std::atoi(argv[3]));
    duty.commandPipe = channel::adopt(std::atoi(argv[4]));
    duty.traceFile = channel::adopt(std::atoi(argv[5]));
    const int noticePipe = supervisor::divide(duty);
    if (noticePipe < 0)
        failToStart();
    limits::apply();
    channel::outliveReader();
    standard_output::take();

    if (!control::open(duty.commandPipe))
        failToStart();
    const std::string sequenceId = control::awaitStart();
    if (sequenceId.empty())
        channel::leave(BadUsage);
    reports.open(reportPipe, control::expectFlush);
    runtime_api::bind(reports);
    if (!control::start(noticePipe, reports))
        failToStart();
    crash_guard::install(reports);

    Module module;
    if (!module.load(argv[1]))
        fail(BadModule, "模块加载失败: " + module.error());
    const auto entry =
        reinterpret_cast<applet_module_entry_function*>(module.symbol("applet_module_entry"));
    const applet_module* applet = entry ? entry(&runtime_api::table()) : nullptr;
    if (!applet || applet->version != APPLET_RUNTIME_VERSION)
        fail(BadModule, "模块与当前运行时不匹配, 请重新编译");
    const applet_sequence* sequence = findSequence(*applet, sequenceId);
    if (!sequence)
        fail(NoSequence, "模块中没有要运行的序列: " + sequenceId);

    runtime_api::setModule(*applet);
    run_tracer::open(duty.traceFile, *applet);
    sequence->run();

    // The module's destructors belong to the run: a crash in them is one of the applet. After them
    // nothing of the applet is left that could end the process another way.
    std::fflush(nullptr);
    runtime_api::logFailureTotals();
    reports.flush(); // while the module's texts are there
    module.unload();
    std::fflush(nullptr);
    reports.end(control::isStopAsked() ? protocol::Stopped : protocol::Finished);
    channel::leave(Success);
}
