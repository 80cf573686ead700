#pragma once

#include "runner/report_buffer.h"

/// Questions of the applet to the editor. One at a time; who asks meanwhile waits.
namespace requests {

/// What ask returns instead of a size.
enum Failure : s64 { Refused = -1, Stopped = -2 };

/// Sends the question and waits for its answer, or for a stop. The answer goes to @p answer, cut to
/// @p room bytes; returns its size, or a Failure. Why a question was refused goes to the log.
s64 ask(ReportBuffer& reports, protocol::RequestKind kind, const protocol::Texts& texts,
        char* answer, size_t room);

/// For the thread that listens to the editor.
void onAnswer(std::uint32_t id, int status, const std::string& text);
void onStop();

/// In a process that the applet has forked: nobody answers any more.
void detach();

} // namespace requests
