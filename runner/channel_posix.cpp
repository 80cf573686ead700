#include "runner/channel.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace channel {

int adopt(int pipe)
{
    constexpr int Lowest = 900;
    const int high = fcntl(pipe, F_DUPFD_CLOEXEC, Lowest);
    if (high < 0) {
        fcntl(pipe, F_SETFD, FD_CLOEXEC);
        return pipe;
    }
    close(pipe);
    return high;
}

void outliveReader()
{
    std::signal(SIGPIPE, SIG_IGN);
}

bool write(int pipe, const void* data, std::size_t size)
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
            return false;
        }
    }
    return true;
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
