#include "runner/process_tree.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <optional>
#include <string>
#include <unistd.h>

namespace process_tree {

namespace {

/// By errno: what was asked for belongs to a process or thread that has ended.
bool isGone()
{
    return errno == ENOENT || errno == ESRCH;
}

/// Empty of a process that has ended; nothing if it can't be read.
std::optional<std::string> contentOf(const std::string& path)
{
    std::string content;
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return isGone() ? std::make_optional(content) : std::nullopt;
    char bytes[4096];
    ssize_t size = 0;
    while ((size = ::read(file, bytes, sizeof bytes)) > 0)
        content.append(bytes, static_cast<std::size_t>(size));
    const bool isRead = size == 0 || isGone();
    ::close(file);
    return isRead ? std::make_optional(content) : std::nullopt;
}

/// A process's children are listed by the thread that has started them. False if a list can't be
/// read.
bool appendChildren(int pid, std::vector<int>& pids)
{
    const std::string tasks = "/proc/" + std::to_string(pid) + "/task/";
    DIR* folder = ::opendir(tasks.c_str());
    if (!folder)
        return isGone();
    bool isWhole = true;
    while (const dirent* task = ::readdir(folder)) {
        if (task->d_name[0] == '.')
            continue;
        const auto children = contentOf(tasks + task->d_name + "/children");
        isWhole = isWhole && children;
        char* at = nullptr;
        for (const char* from = children ? children->c_str() : "";
             *from && pids.size() <= MaxMembers; from = at) {
            const long child = std::strtol(from, &at, 10);
            if (at == from)
                break;
            if (child > 0)
                pids.push_back(static_cast<int>(child));
        }
    }
    ::closedir(folder);
    return isWhole;
}

} // namespace

Descendants descendants(const std::function<void(int pid)>& onMet)
{
    Descendants found;
    std::vector<int>& pids = found.pids;
    pids.push_back(getpid());
    for (std::size_t i = 0; i < pids.size(); ++i) {
        if (i > 0 && onMet)
            onMet(pids[i]);
        found.isWhole = appendChildren(pids[i], pids) && found.isWhole;
    }
    pids.erase(pids.begin());
    return found;
}

bool describe(int pid, Member& member)
{
    member.pid = pid;
    // "pid (name) state parent group ..."; the name may hold brackets.
    const std::string stat = contentOf("/proc/" + std::to_string(pid) + "/stat").value_or("");
    const std::size_t open = stat.find('(');
    const std::size_t close = stat.rfind(')');
    char state = 0;
    int parent = 0;
    if (open == std::string::npos || close == std::string::npos || close < open ||
        std::sscanf(stat.c_str() + close + 1, " %c %d %d", &state, &parent, &member.group) != 3)
        return false;
    member.hasEnded = state == 'Z' || state == 'X';
    std::memset(member.name, 0, sizeof member.name);
    std::memcpy(member.name, stat.data() + open + 1,
                std::min(close - open - 1, sizeof member.name - 1));
    return true;
}

} // namespace process_tree
