#include "runner/requests.h"

#include <algorithm>
#include <condition_variable>
#include <cstring>
#include <mutex>

namespace requests {

namespace {

struct State
{
    std::mutex asking; ///< held by who asks
    std::mutex mutex;  ///< guards what follows
    std::condition_variable changed;
    std::uint32_t lastId = 0;
    bool isAnswered = false;
    bool isStopped = false;
    int status = 0;
    std::string text;
};
// Never destroyed: a thread of the applet may wait while an exit() runs its handlers.
State& state = *new State;
bool isDetached = false;

/// A question that the user has declined needs no words.
s64 refuse(ReportBuffer& reports, const std::string& reason)
{
    if (!reason.empty())
        reports.log(ReportBuffer::ErrorLevel, reason.data(), reason.size());
    return Refused;
}

} // namespace

s64 ask(ReportBuffer& reports, protocol::RequestKind kind, const protocol::Texts& texts,
        char* answer, size_t room)
{
    std::size_t size = 0;
    for (const std::string& text : texts)
        size += text.size();
    if (isDetached)
        return Refused;
    if (size > protocol::MaxText)
        return refuse(reports, "发给编辑器的文本过长");
    const std::lock_guard<std::mutex> turn(state.asking);
    std::unique_lock<std::mutex> lock(state.mutex);
    if (state.isStopped)
        return Stopped; // the editor answers no more, and takes one question at a time
    state.isAnswered = false;
    const std::uint32_t id = ++state.lastId;
    lock.unlock();
    reports.request(id, kind, texts);
    lock.lock();
    state.changed.wait(lock, [] { return state.isAnswered || state.isStopped; });
    if (!state.isAnswered)
        return Stopped;
    const std::string text = state.text;
    const bool isRefused = state.status != protocol::Done;
    lock.unlock();
    if (isRefused)
        return refuse(reports, text);
    const size_t taken = std::min(room, text.size());
    std::memcpy(answer, text.data(), taken);
    return static_cast<s64>(taken);
}

void onAnswer(std::uint32_t id, int status, const std::string& text)
{
    const std::lock_guard<std::mutex> lock(state.mutex);
    if (id != state.lastId)
        return;
    state.isAnswered = true;
    state.status = status;
    state.text = text;
    state.changed.notify_all();
}

void onStop()
{
    const std::lock_guard<std::mutex> lock(state.mutex);
    state.isStopped = true;
    state.changed.notify_all();
}

void detach()
{
    isDetached = true;
}

} // namespace requests
