#pragma once

#include "standalone/runtime/protocol.h"

#include <QString>

#include <memory>
#include <mutex>
#include <string>

namespace standalone {

class RunCommands;

/// Answers what a running applet asks: system variables at once, questions to the user when the
/// user has answered. Nothing here waits, so that reports go on meanwhile.
class AppletRequests
{
public:
    AppletRequests(std::string appName, std::shared_ptr<RunCommands> commands);
    ~AppletRequests() { close(); }
    AppletRequests(const AppletRequests&) = delete;
    AppletRequests& operator=(const AppletRequests&) = delete;

    /// On the thread that reads the child's reports.
    void take(std::uint32_t id, protocol::RequestKind kind, const protocol::Texts& texts);

    /// Takes an open question from the screen, and lets none come any more. Any thread.
    void close();

private:
    void answer(std::uint32_t id, const QString& value) const;
    void refuse(std::uint32_t id, const QString& reason) const;
    void askUser(std::uint32_t id, protocol::RequestKind kind, const protocol::Texts& texts);

    const std::string m_appName;
    const std::shared_ptr<RunCommands> m_commands;
    std::mutex m_mutex; ///< guards both
    quint64 m_question = 0;
    bool m_isClosed = false;
};

} // namespace standalone
