#pragma once

#include <cstddef>
#include <mutex>

namespace standalone {

class ChildProcess;

/// The way of commands to a run's child, for those that may outlive it. Any thread.
class RunCommands
{
public:
    /// From now on commands go there; null: nowhere.
    void setChild(ChildProcess* child);

    /// False if the child doesn't take what it is sent; one that is gone needs nothing.
    bool send(const unsigned char* command, std::size_t size);
    /// Makes the thread that watches the child look up.
    void wake();

private:
    std::mutex m_mutex; ///< guards the child, which stays while it is held
    ChildProcess* m_child = nullptr;
};

} // namespace standalone
