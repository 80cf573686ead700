#include "runner/process_memory.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace process_memory {

namespace {

/// What is read of a process's status stands from this line on. Before it stands the list of the
/// user's groups, of any length.
constexpr char FirstLine[] = "\nVmPeak:";

/// The lines of a file of the system, zero-terminated. Only this and the stack is touched: a signal
/// handler reads so too.
struct Text
{
    char bytes[4096];
    bool isRead = false;
    bool isGone = false; ///< there is no such process any more

    /// All of a file that fits in, of a longer one what begins at FirstLine.
    void read(int file)
    {
        off_t at = 0;
        ssize_t size = readAt(file, at);
        while (size == ssize_t(sizeof bytes - 1)) {
            const char* first = std::strstr(bytes, FirstLine);
            if (first == bytes)
                return;
            // What is cut at the end comes once more.
            at += first ? first - bytes : size - ssize_t(sizeof FirstLine);
            size = readAt(file, at);
        }
    }

    ssize_t readAt(int file, off_t at)
    {
        ssize_t size = -1;
        do {
            size = ::pread(file, bytes, sizeof bytes - 1, at);
        } while (size < 0 && errno == EINTR);
        isRead = size >= 0;
        isGone = size < 0 && errno == ESRCH;
        bytes[isRead ? size : 0] = 0;
        return size;
    }

    void read(int pid, const char* name)
    {
        char path[64];
        std::snprintf(path, sizeof path, "/proc/%d/%s", pid, name);
        const int file = ::open(path, O_RDONLY | O_CLOEXEC);
        isGone = file < 0 && (errno == ENOENT || errno == ESRCH);
        if (file < 0)
            return;
        read(file);
        ::close(file);
    }

    /// Bytes behind a line's name, which ends with a colon; false if there is no such line.
    bool find(const char* name, std::uint64_t& value) const
    {
        const std::size_t length = std::strlen(name);
        for (const char* line = bytes; line; line = std::strchr(line, '\n')) {
            line += *line == '\n';
            if (std::strncmp(line, name, length) != 0)
                continue;
            const char* at = line + length;
            while (*at == ' ' || *at == '\t')
                ++at;
            value = 0;
            for (; *at >= '0' && *at <= '9'; ++at)
                value = 10 * value + static_cast<std::uint64_t>(*at - '0');
            value <<= 10; // they are told in kB
            return true;
        }
        return false;
    }

    /// 0 for lines that aren't there, as those of a process that has just ended.
    std::uint64_t sum(const char* const (&names)[3]) const
    {
        std::uint64_t total = 0;
        for (const char* name : names) {
            std::uint64_t value = 0;
            total += find(name, value) ? value : 0;
        }
        return total;
    }
};

Sizes sizesIn(const Text& status)
{
    Sizes sizes;
    status.find("VmData:", sizes.reserved);
    sizes.resident = status.sum({"RssAnon:", "RssShmem:", "VmSwap:"});
    return sizes;
}

} // namespace

std::optional<Sizes> sizesOf(int pid)
{
    Text status;
    status.read(pid, "status");
    if (status.isGone)
        return Sizes();
    return status.isRead ? std::make_optional(sizesIn(status)) : std::nullopt;
}

std::optional<std::uint64_t> shareOf(int pid)
{
    Text rollup;
    rollup.read(pid, "smaps_rollup");
    if (rollup.isGone)
        return 0;
    std::uint64_t anonymous = 0;
    if (!rollup.isRead || !rollup.find("Pss_Anon:", anonymous))
        return std::nullopt;
    return rollup.sum({"Pss_Anon:", "Pss_Shmem:", "SwapPss:"});
}

int openOwn()
{
    return ::open("/proc/self/status", O_RDONLY | O_CLOEXEC);
}

std::optional<Sizes> ownSizes(int file)
{
    Text status;
    status.read(file);
    return status.isRead ? std::make_optional(sizesIn(status)) : std::nullopt;
}

} // namespace process_memory
