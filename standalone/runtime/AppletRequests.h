#pragma once

#include "protocol/protocol.h"

#include <QString>

#include <memory>
#include <mutex>
#include <string>

namespace standalone {

class RunCommands;

/// Answers what a running applet asks: system variables at once, questions to the user when the
/// user has answered. Nothing here waits for the user, so that reports go on meanwhile.
///
/// A child asks one thing at a time and waits for the answer; its requests are numbered from 1 on.
class AppletRequests
{
public:
    AppletRequests(std::string appName, std::shared_ptr<RunCommands> commands);
    ~AppletRequests() { close(); }
    AppletRequests(const AppletRequests&) = delete;
    AppletRequests& operator=(const AppletRequests&) = delete;

    /// On the thread that reads the child's reports. What is wrong if the child may not ask this
    /// now, as protocol::Reader::refuse takes it; else null.
    const char* take(std::uint32_t id, protocol::RequestKind kind, const protocol::Texts& texts);

    /// Takes an open question from the screen, and lets none come any more. Any thread.
    void close();

private:
    /// Shared with the answer of a question, which may come when the run is over.
    struct State
    {
        std::mutex mutex; ///< guards what follows
        std::uint32_t lastId = 0;
        quint64 question = 0; ///< on the screen; 0: none
        bool isAnswered = true;
        bool isClosed = false;
    };

    bool useVariable(std::uint32_t id, protocol::RequestKind kind, const protocol::Texts& texts);
    bool answer(std::uint32_t id, const QString& value) const;
    bool refuse(std::uint32_t id, const QString& reason) const;
    void askUser(std::uint32_t id, protocol::RequestKind kind, const protocol::Texts& texts);

    const std::string m_appName;
    const std::shared_ptr<RunCommands> m_commands;
    const std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace standalone
