#pragma once

#include <cstddef>
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

/// The ids of all descendants that the system tells of, parents before their children; what begins
/// meanwhile may be missing. One whose parent has ended counts if the calling process takes in
/// orphans. At most MaxMembers.
std::vector<int> descendants();
constexpr std::size_t MaxMembers = 20000;

/// False if there is no such process any more.
bool describe(int pid, Member& member);

} // namespace process_tree
