#include "runner/crash_guard.h"

#include "runner/report_buffer.h"

#include <csignal>
#include <cstdlib>
#include <initializer_list>

namespace crash_guard {

namespace {

ReportBuffer* reportBuffer = nullptr;
// A run that calls itself without end has used up its own stack when the signal comes.
alignas(16) char signalStack[64 * 1024];

void onCrash(int number)
{
    reportBuffer->flushAfterCrash();
    // The handler was removed on entry: the signal now ends the process.
    std::raise(number);
}

void onExit()
{
    reportBuffer->flush();
}

} // namespace

void install(ReportBuffer& reports)
{
    reportBuffer = &reports;
    std::atexit(onExit);

    stack_t stack = {};
    stack.ss_sp = signalStack;
    stack.ss_size = sizeof signalStack;
    sigaltstack(&stack, nullptr);

    struct sigaction action = {};
    action.sa_handler = onCrash;
    action.sa_flags = static_cast<int>(SA_ONSTACK | SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    for (const int number : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL})
        sigaction(number, &action, nullptr);
}

} // namespace crash_guard
