#pragma once

#include <cstdint>
#include <optional>

/// What a process has of the machine's memory, as the system tells it. In bytes.
namespace process_memory {

struct Sizes
{
    std::uint64_t reserved = 0; ///< it may write to, and nobody else; in memory or not
    /// In memory or swapped out: its own, and what it shares by a shared mapping. Pages of files
    /// don't count: they can be given up at any time.
    std::uint64_t resident = 0;
};

/// All 0 of a process that has ended; empty if the system doesn't tell.
std::optional<Sizes> sizesOf(int pid);

/// Of what resident counts, that part which is left when each page is divided among the processes
/// that have it, so that the sum over forked processes is what they take. Takes a millisecond a
/// gigabyte, and more. 0 of a process that has ended; empty if the system doesn't tell.
std::optional<std::uint64_t> shareOf(int pid);

/// Opens what tells of the calling process, for later; -1 if that can't be.
int openOwn();
/// The calling process's sizes from that. Async-signal-safe.
std::optional<Sizes> ownSizes(int file);

} // namespace process_memory
