#pragma once

#include <atomic>
#include <cstddef>
#include <memory>

namespace standalone {

class RunCommands;

/// What a run has said and the GUI thread may not have dealt with yet. Callbacks of a run leave
/// work there, an event or a row each; all of it is done once that thread's event loop has gone
/// round. While Most waits, the child is not read on: its pipes fill, and it waits in turn. So a
/// child that says more than the editor can take costs neither memory nor the event loop.
///
/// Outlives its run in the rounds that are asked for; without an application nothing ever waits.
class RunBacklog : public std::enable_shared_from_this<RunBacklog>
{
public:
    /// In bytes, with what each thing said costs beside its texts. What is read at once may go
    /// beyond it.
    static constexpr std::size_t Most = std::size_t(4) << 20;
    static constexpr std::size_t CostOfEach = 1024;

    /// @p commands wakes the thread that watches the child when there is room again.
    explicit RunBacklog(std::shared_ptr<RunCommands> commands);

    /// One more thing is said, with texts of that many bytes. Never waits. Any thread, as isFull.
    void add(std::size_t bytes);
    bool isFull() const { return waiting() >= Most; }

private:
    std::size_t waiting() const { return m_said - m_done; }
    void askForRound();
    void endRound(std::size_t said);

    const std::shared_ptr<RunCommands> m_commands;
    std::atomic<std::size_t> m_said{0}; ///< in all, as m_done; may come round to 0
    std::atomic<std::size_t> m_done{0};
    std::atomic<bool> m_isRoundAsked{false};
};

} // namespace standalone
