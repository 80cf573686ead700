#include "standalone/runtime/RunCommands.h"

#include "standalone/runtime/ChildProcess.h"

namespace standalone {

void RunCommands::setChild(ChildProcess* child)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_child = child;
}

bool RunCommands::send(const unsigned char* command, std::size_t size)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return !m_child || m_child->sendCommand(command, size) != ChildProcess::Sent::Full;
}

void RunCommands::wake()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_child)
        m_child->wake();
}

} // namespace standalone
