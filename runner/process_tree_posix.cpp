#include "runner/process_tree.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace process_tree {

namespace {

std::string contentOf(const std::string& path)
{
    std::string content;
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    char bytes[4096];
    ssize_t size = 0;
    while (file >= 0 && (size = ::read(file, bytes, sizeof bytes)) > 0)
        content.append(bytes, static_cast<std::size_t>(size));
    if (file >= 0)
        ::close(file);
    return content;
}

/// A process's children are listed by the thread that has started them.
void appendChildren(int pid, std::vector<int>& pids)
{
    const std::string tasks = "/proc/" + std::to_string(pid) + "/task/";
    DIR* folder = ::opendir(tasks.c_str());
    if (!folder)
        return;
    while (const dirent* task = ::readdir(folder)) {
        if (task->d_name[0] == '.')
            continue;
        const std::string children = contentOf(tasks + task->d_name + "/children");
        char* at = nullptr;
        for (const char* from = children.c_str(); *from && pids.size() <= MaxMembers; from = at) {
            const long child = std::strtol(from, &at, 10);
            if (at == from)
                break;
            if (child > 0)
                pids.push_back(static_cast<int>(child));
        }
    }
    ::closedir(folder);
}

} // namespace

std::vector<int> descendants()
{
    std::vector<int> pids = {getpid()};
    for (std::size_t i = 0; i < pids.size(); ++i)
        appendChildren(pids[i], pids);
    pids.erase(pids.begin());
    return pids;
}

bool describe(int pid, Member& member)
{
    // "pid (name) state parent group ..."; the name may hold brackets.
    const std::string stat = contentOf("/proc/" + std::to_string(pid) + "/stat");
    const std::size_t open = stat.find('(');
    const std::size_t close = stat.rfind(')');
    char state = 0;
    int parent = 0;
    if (open == std::string::npos || close == std::string::npos || close < open ||
        std::sscanf(stat.c_str() + close + 1, " %c %d %d", &state, &parent, &member.group) != 3)
        return false;
    member.pid = pid;
    member.hasEnded = state == 'Z' || state == 'X';
    std::memset(member.name, 0, sizeof member.name);
    std::memcpy(member.name, stat.data() + open + 1,
                std::min(close - open - 1, sizeof member.name - 1));
    return true;
}

} // namespace process_tree
