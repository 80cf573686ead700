#include "runner/control.h"

#include "protocol/protocol_reader.h"
#include "runner/channel.h"
#include "runner/requests.h"
#include "runner/run_tracer.h"
#include "runner/standard_output.h"
#include "runner/supervisor.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

namespace control {

namespace {

constexpr int FlushMilliseconds = 4;
/// The longest sleep: a descriptor that the applet closes wakes nobody, nor does a supervisor that
/// is gone.
constexpr int LookMilliseconds = 40;

volatile int stopAsked = 0;
int stopPipe[2];  // a byte that stays, with the stop: that wakes every wait
int flushPipe[2]; // a byte for each flush that is asked for
int commands = -1;
int notices = -1;
ReportBuffer* reportBuffer = nullptr;

class Commands : public protocol::Receiver
{
public:
    void onStart(const std::string& id) override { sequenceId = id; }
    void onStop() override
    {
        if (isStopAsked())
            return;
        __atomic_store_n(&stopAsked, 1, __ATOMIC_RELAXED);
        channel::write(stopPipe[1], "", 1); // a forked process may hold this end open as well
        requests::onStop();
    }
    void onAnswer(std::uint32_t id, int status, const std::string& text) override
    {
        requests::onAnswer(id, status, text);
    }
    std::string sequenceId;
};
// Never destroyed: the thread still listens while an exit() of the applet runs its handlers.
Commands& received = *new Commands;
protocol::Reader& reader = *new protocol::Reader(received, protocol::Channel::Commands);

/// Takes in what the editor sent; false at the end of the channel or when it makes no sense.
bool readCommands()
{
    unsigned char bytes[512];
    const std::size_t size = channel::read(commands, bytes, sizeof bytes);
    return size > 0 && reader.feed(bytes, size);
}

[[noreturn]] void leaveForMemory()
{
    run_tracer::setCause(run_trace::MemoryLimit);
    standard_output::flushUnlessBusy();
    reportBuffer->flush();
    channel::leave(1);
}

void* listen(void*)
{
    std::int64_t flushAt = -1;
    for (;;) {
        pollfd sources[] = {{commands, POLLIN, 0}, {flushPipe[0], POLLIN, 0}, {notices, POLLIN, 0}};
        const std::int64_t sleep = flushAt < 0 ? LookMilliseconds : flushAt - now();
        poll(sources, 3, static_cast<int>(std::max<std::int64_t>(0, sleep)));
        if (sources[2].revents & POLLIN)
            leaveForMemory();
        if (sources[0].revents != 0 && !readCommands()) {
            if (!(sources[0].revents & POLLHUP)) {
                run_tracer::setCause(run_trace::ChannelLost);
                channel::leave(1);
            }
            commands = -1; // the editor has closed it, and the supervisor ends the run
        }
        if (sources[1].revents & POLLIN) {
            char byte;
            channel::read(flushPipe[0], &byte, 1);
            flushAt = now() + FlushMilliseconds;
        }
        if (isStopAsked())
            standard_output::flushUnlessBusy(); // a kill may follow
        if (flushAt >= 0 && now() >= flushAt) {
            flushAt = -1;
            reportBuffer->flushDue();
        }
    }
    return nullptr;
}

/// A thread of its own, without a descriptor: the other one may wait for ever at one that the
/// applet has put in the place of ours.
void* watchSupervisor(void*)
{
    while (supervisor::isThere())
        usleep(LookMilliseconds * 1000);
    channel::leave(1);
}

bool startThread(void* (*run)(void*))
{
    pthread_t thread;
    errno = pthread_create(&thread, nullptr, run, nullptr);
    return errno == 0 && pthread_detach(thread) == 0;
}

} // namespace

bool open(int commandPipe)
{
    commands = commandPipe;
    if (pipe2(stopPipe, O_CLOEXEC) != 0 || pipe2(flushPipe, O_CLOEXEC) != 0)
        return false;
    for (int* end : {&stopPipe[0], &stopPipe[1], &flushPipe[0], &flushPipe[1]})
        *end = channel::adopt(*end);
    return true;
}

std::string awaitStart()
{
    while (received.sequenceId.empty()) {
        if (!readCommands())
            return std::string();
    }
    return received.sequenceId;
}

bool start(int noticePipe, ReportBuffer& reports)
{
    notices = noticePipe;
    reportBuffer = &reports;
    // Signals are for the applet's thread, whose handlers have a stack of their own.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const bool isStarted = startThread(listen) && startThread(watchSupervisor);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return isStarted;
}

bool isStopAsked()
{
    return __atomic_load_n(&stopAsked, __ATOMIC_RELAXED) != 0;
}

const volatile int* stopFlag()
{
    return &stopAsked;
}

void expectFlush()
{
    const char byte = 0;
    while (::write(flushPipe[1], &byte, 1) < 0 && errno == EINTR) {
    }
}

bool wait(std::int64_t milliseconds)
{
    constexpr std::int64_t LongestPoll = 60 * 60 * 1000;
    const std::int64_t end = now() + milliseconds;
    pollfd stopped = {stopPipe[0], POLLIN, 0};
    for (std::int64_t left = milliseconds; left > 0 && !isStopAsked(); left = end - now())
        poll(&stopped, 1, static_cast<int>(std::min(left, LongestPoll)));
    return !isStopAsked();
}

std::int64_t now()
{
    timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<std::int64_t>(time.tv_sec) * 1000 + time.tv_nsec / 1000000;
}

} // namespace control
