#pragma once

#include <cstddef>
#include <functional>
#include <vector>

/// The processes that have come from the calling one.
namespace process_tree {

struct Member
{
    int pid = 0;
    int group = 0;
    char name[16] = {}; ///< of its program, as the system cuts it; any bytes
    bool hasEnded = false;
};

struct Descendants
{
    std::vector<int> pids; ///< parents before their children; at most MaxMembers
    bool isWhole = true;   ///< false if the system didn't tell of all
};
constexpr std::size_t MaxMembers = 20000;

/// The ids of all descendants; what begins meanwhile may be missing. One whose parent has ended
/// counts if the calling process takes in orphans. @p onMet is called with each before its own
/// children are looked for: one that is stopped there starts none unseen.
Descendants descendants(const std::function<void(int pid)>& onMet = nullptr);

/// False if there is no such process any more, or it can't be read: only its id is filled in then.
bool describe(int pid, Member& member);

} // namespace process_tree
