#pragma once

#include "model/services/processedit.h"
#include "protocol/protocol_reader.h"
#include "protocol/run_limits.h"
#include "standalone/runtime/AppletRequests.h"
#include "standalone/runtime/RunBacklog.h"
#include "standalone/runtime/RunCommands.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace standalone {

class ChildProcess;
struct RunAccount;

/// What a run event is called with.
using sdk_ui_interface::processedit::RunCrashed;
using sdk_ui_interface::processedit::RunEvent;
using sdk_ui_interface::processedit::RunFinished;
using sdk_ui_interface::processedit::RunStopped;

/// One run of an applet: a child process and the thread that starts it, listens to it, calls the
/// editor's callbacks and tells the end. All callbacks come from that thread, with no lock held.
/// Before a run that did not come to its own end is told, the log says why it ended and which steps
/// ran last.
class AppletRun : private protocol::Receiver
{
public:
    struct Request
    {
        QString program; ///< the runner
        QString module;
        std::string appName; ///< local 8-bit encoding
        std::string sequenceId;
        qint64 memoryLimit = 0; ///< in bytes; 0: none
        sdk_ui_interface::processedit::RunEventCallback onRunEvent = nullptr;
    };

    /// Time that a run gets to end by itself after a stop, before it is killed.
    static constexpr std::chrono::milliseconds StopPatience{400};
    /// How long a child that was killed has for ending what it has started, before it is not asked
    /// any more.
    static constexpr std::chrono::milliseconds SupervisorPatience{
        run_limits::SupervisorMilliseconds};
    /// How long the end of a child is waited for after that; it then goes on alone.
    static constexpr std::chrono::milliseconds DeathPatience{run_limits::DeathMilliseconds};

    explicit AppletRun(Request request);
    /// Once. False if there is no thread to be had: then it is over, and nothing was called.
    bool start();
    /// Waits for the thread; not to be called on it.
    ~AppletRun() override;

    /// Until the child has ended: false already in the run event.
    bool isRunning() const { return m_running; }
    /// Whether nothing is left of it, not even a callback.
    bool isOver() const { return m_over; }

    /// Asks the applet to stop. Any thread, never waits.
    void stop(std::chrono::milliseconds patience = StopPatience);

    /// No callback begins after this; one that runs goes on.
    void silence() { m_silent = true; }

private:
    using Clock = std::chrono::steady_clock;

    void run();
    RunEvent watchChild();
    void listen(ChildProcess& child, RunAccount& account);
    void kill(ChildProcess& child);
    void beginCommands();
    int timeUntilKill() const;
    int timeUntilAction() const;
    void sendStop();
    void tellAccount(const RunAccount& account);
    QString stepsByName(const RunAccount& account) const;
    void log(int level, const std::string& text);

    void onBlock(const std::string& sequenceId, const std::string& blockId, double progress,
                 int result) override;
    void onSequence(const std::string& sequenceId, bool isEnd) override;
    void onTemplateSequence(const std::string& templateId, const std::string& sequenceId,
                            bool isEnd) override;
    void onLog(int level, const std::string& text) override;
    void onEnd(protocol::EndReason reason) override;
    void onRequest(std::uint32_t id, protocol::RequestKind kind,
                   const protocol::Texts& texts) override;

    const Request m_request;
    std::atomic<bool> m_running{true};
    std::atomic<bool> m_over{false};
    std::atomic<bool> m_silent{false};
    protocol::Reader m_reader{*this, protocol::Channel::Reports};
    int m_endReason = 0;      ///< of the end record, 0 without one
    std::string m_lastStepId; ///< of the last report
    bool m_hasToldFault = false;

    const std::shared_ptr<RunCommands> m_commands = std::make_shared<RunCommands>();
    const std::shared_ptr<RunBacklog> m_backlog = std::make_shared<RunBacklog>(m_commands);
    AppletRequests m_requests;
    Clock::time_point m_forceAt = Clock::time_point::max(); ///< of the thread, set with a kill
    Clock::time_point m_leaveAt = Clock::time_point::max(); ///< the same
    mutable std::mutex m_mutex;                             ///< guards both below
    bool m_stopAsked = false;
    Clock::time_point m_killAt = Clock::time_point::max();

    std::thread m_thread; // the last member: it uses all others
};

} // namespace standalone
