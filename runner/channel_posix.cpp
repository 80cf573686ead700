#include "runner/channel.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace channel {

void adopt(int reportPipe, int commandPipe)
{
    fcntl(reportPipe, F_SETFD, FD_CLOEXEC);
    fcntl(commandPipe, F_SETFD, FD_CLOEXEC);
    std::signal(SIGPIPE, SIG_IGN);
#ifdef __linux__
    // The thread that started this process waits for its end, so its death is the editor's. The
    // end of the command channel covers the moment before this call.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
}

void write(int pipe, const void* data, std::size_t size)
{
    const char* at = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t written = ::write(pipe, at, size);
        if (written > 0) {
            at += written;
            size -= static_cast<std::size_t>(written);
        } else if (written < 0 && errno == EAGAIN) {
            pollfd ready = {pipe, POLLOUT, 0};
            poll(&ready, 1, -1);
        } else if (written < 0 && errno != EINTR) {
            leave(1);
        }
    }
}

std::size_t read(int pipe, void* data, std::size_t size)
{
    for (;;) {
        const ssize_t got = ::read(pipe, data, size);
        if (got >= 0)
            return static_cast<std::size_t>(got);
        if (errno != EINTR)
            return 0;
    }
}

void leave(int exitCode)
{
    _exit(exitCode);
}

} // namespace channel
