#include "runner/crash_guard.h"

#include "runner/limits.h"
#include "runner/report_buffer.h"
#include "runner/requests.h"
#include "runner/run_tracer.h"
#include "runner/standard_output.h"

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <pthread.h>

namespace crash_guard {

namespace {

ReportBuffer* reportBuffer = nullptr;
// A run that calls itself without end has used up its own stack when the signal comes.
alignas(16) char signalStack[64 * 1024];
std::uintptr_t stackEnd = 0; // its lowest address

bool isBelowStack(const void* address)
{
    constexpr std::uintptr_t LargestFrame = 1u << 20;
    const auto at = reinterpret_cast<std::uintptr_t>(address);
    return stackEnd != 0 && at < stackEnd + LargestFrame && at + LargestFrame > stackEnd;
}

void onCrash(int number, siginfo_t* info, void*)
{
    if (limits::isExceededByThis())
        run_tracer::setCause(run_trace::MemoryLimit);
    else if ((number == SIGSEGV || number == SIGBUS) && isBelowStack(info->si_addr))
        run_tracer::setCause(run_trace::StackOverflow);
    standard_output::flushAfterCrash();
    reportBuffer->flushAfterCrash();
    // The handler was removed on entry: the signal now ends the process.
    std::raise(number);
}

void onExit()
{
    reportBuffer->flush();
}

void onForked()
{
    reportBuffer->detach();
    requests::detach();
    run_tracer::detach();
    standard_output::detach();
}

void findStack()
{
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0)
        return;
    void* lowest = nullptr;
    std::size_t size = 0;
    if (pthread_attr_getstack(&attributes, &lowest, &size) == 0)
        stackEnd = reinterpret_cast<std::uintptr_t>(lowest);
    pthread_attr_destroy(&attributes);
}

} // namespace

void install(ReportBuffer& reports)
{
    reportBuffer = &reports;
    findStack();
    std::atexit(onExit);
    pthread_atfork(nullptr, nullptr, onForked);

    stack_t stack = {};
    stack.ss_sp = signalStack;
    stack.ss_size = sizeof signalStack;
    sigaltstack(&stack, nullptr);

    struct sigaction action = {};
    action.sa_sigaction = onCrash;
    action.sa_flags = static_cast<int>(SA_SIGINFO | SA_ONSTACK | SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    for (const int number : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL})
        sigaction(number, &action, nullptr);
}

} // namespace crash_guard
