#include "runner/limits.h"

#include "runner/channel.h"
#include "runner/process_memory.h"

#include <cstdint>
#include <sys/resource.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define RUNNER_IS_SANITIZED 1
#else
#define RUNNER_IS_SANITIZED 0
#endif

namespace limits {

namespace {

std::uint64_t memoryLimit = 0;
int ownStatus = -1; // opened early: an applet may use up all descriptors

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

/// The sanitizers reserve more than any machine has.
bool isExceeded(const process_memory::Sizes& sizes)
{
    return sizes.resident > memoryLimit || (!RUNNER_IS_SANITIZED && sizes.reserved > memoryLimit);
}

template <typename Read> auto readTwice(Read read, int pid)
{
    const auto first = read(pid);
    return first ? first : read(pid);
}

} // namespace

void setMemory(std::size_t memory)
{
    memoryLimit = memory;
}

void apply()
{
    constexpr rlim_t StackSize = 64u << 20;
    constexpr rlim_t Headroom = 3; // a vector that doubles just below the limit still gets its way
    forbidCoreFiles();
    lower(RLIMIT_STACK, StackSize);
    if (memoryLimit > 0 && !RUNNER_IS_SANITIZED)
        lower(RLIMIT_AS, Headroom * memoryLimit);
    const int file = process_memory::openOwn();
    ownStatus = file < 0 ? -1 : channel::adopt(file);
}

bool isExceededBy(int runner, const std::vector<int>& pids)
{
    if (memoryLimit == 0)
        return false;
    std::uint64_t together = 0;
    for (const int pid : pids) {
        const auto sizes = readTwice(process_memory::sizesOf, pid);
        if (!sizes || (pid == runner && isExceeded(*sizes)))
            return true;
        together += sizes->resident;
    }
    if (together <= memoryLimit)
        return false;
    // Dividing what they share is dear: only those are asked that may have too much.
    together = 0;
    for (const int pid : pids) {
        const auto share = readTwice(process_memory::shareOf, pid);
        if (!share)
            return true;
        together += *share;
    }
    return together > memoryLimit;
}

bool isExceededByThis()
{
    if (memoryLimit == 0 || ownStatus < 0)
        return false;
    const auto sizes = process_memory::ownSizes(ownStatus);
    return sizes && isExceeded(*sizes);
}

void forbidCoreFiles()
{
    lower(RLIMIT_CORE, 0);
}

} // namespace limits
