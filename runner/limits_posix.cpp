#include "runner/limits.h"

#include <cstdlib>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define RUNNER_IS_SANITIZED 1
#else
#define RUNNER_IS_SANITIZED 0
#endif

namespace limits {

namespace {

/// Which number of the process's sizes counts: what it may write to, or, since the sanitizers
/// reserve more than any machine has, what it has in memory.
constexpr int Field = RUNNER_IS_SANITIZED ? 1 : 5;

std::size_t memoryLimit = 0;
std::size_t pageSize = 4096;

void lower(int resource, rlim_t value)
{
    rlimit limit;
    if (getrlimit(static_cast<__rlimit_resource>(resource), &limit) != 0)
        return;
    if (limit.rlim_cur == RLIM_INFINITY || limit.rlim_cur > value) {
        limit.rlim_cur = value;
        setrlimit(static_cast<__rlimit_resource>(resource), &limit);
    }
}

} // namespace

void apply(std::size_t memory)
{
    constexpr rlim_t StackSize = 64u << 20;
    constexpr rlim_t Headroom = 3; // a vector that doubles just below the limit still gets its way
    memoryLimit = memory;
    pageSize = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    lower(RLIMIT_CORE, 0);
    lower(RLIMIT_STACK, StackSize);
    if (memory > 0 && !RUNNER_IS_SANITIZED)
        lower(RLIMIT_AS, Headroom * memory);
}

bool isMemoryExceeded()
{
    if (memoryLimit == 0)
        return false;
    char text[128];
    const int file = ::open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
    const ssize_t size = file < 0 ? 0 : ::read(file, text, sizeof text - 1);
    if (file >= 0)
        ::close(file);
    // "size resident shared text lib data ...", in pages.
    std::size_t pages = 0;
    int field = 0;
    for (ssize_t i = 0; i < size && field <= Field; ++i) {
        if (text[i] == ' ')
            ++field;
        else if (field == Field)
            pages = 10 * pages + static_cast<std::size_t>(text[i] - '0');
    }
    return pages * pageSize > memoryLimit;
}

} // namespace limits
