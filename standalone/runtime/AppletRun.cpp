#include "standalone/runtime/AppletRun.h"

#include "model/services/applet_runtime.h"
#include "standalone/runtime/ChildProcess.h"
#include "standalone/runtime/RunnerRegistry.h"

#include <QCoreApplication>

namespace standalone {

namespace {

std::string text(const char* source, const QString& detail = QString())
{
    const QString line = QCoreApplication::translate("standalone::AppletRun", source);
    return (detail.isEmpty() ? line : line.arg(detail)).toStdString();
}

} // namespace

AppletRun::AppletRun(Request request)
    : m_request(std::move(request)), m_thread(&AppletRun::run, this)
{
}

AppletRun::~AppletRun()
{
    m_thread.join();
}

void AppletRun::stop(std::chrono::milliseconds patience)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_stopAsked = true;
    m_killAt = std::min(m_killAt, Clock::now() + patience);
    sendStop();
}

/// Called with the mutex held.
void AppletRun::sendStop()
{
    if (!m_child)
        return;
    unsigned char command[protocol::MaxSmallRecord];
    m_child->sendCommand(command, protocol::putStop(command));
    m_child->wake();
}

void AppletRun::run()
{
    const RunEvent event = watchChild();
    m_running = false;
    if (m_request.onRunEvent && !m_silent) {
        sdk_ui_interface::processedit::RunInfo info{m_request.appName, m_request.sequenceId};
        m_request.onRunEvent(&info, event);
    }
    m_over = true;
}

RunEvent AppletRun::watchChild()
{
    ChildProcess child;
    if (!child.start(m_request.program, {m_request.module})) {
        log(LogError, text(QT_TRANSLATE_NOOP("standalone::AppletRun", "运行程序启动失败: %1"),
                           child.error()));
        return RunCrashed;
    }
    beginCommands(child);

    protocol::Reader reader(*this);
    LineSplitter output([this](const std::string& line) { log(LogInfo, line); });
    LineSplitter errors([this](const std::string& line) { log(LogError, line); });
    const auto sink = [&](ChildProcess::Stream stream, const char* data, std::size_t size) {
        if (stream == ChildProcess::Output)
            output.feed(data, size);
        else if (stream == ChildProcess::Errors)
            errors.feed(data, size);
        else if (!reader.isCorrupt() &&
                 !reader.feed(reinterpret_cast<const unsigned char*>(data), size))
            child.kill();
    };
    while (child.pump(timeUntilKill(), sink)) {
        if (timeUntilKill() == 0) {
            child.kill();
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_killAt = Clock::time_point::max();
        }
    }

    bool stopAsked = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_child = nullptr;
        stopAsked = m_stopAsked;
    }
    const bool leftWell = child.reap();
    output.finish();
    errors.finish();
    if (reader.isCorrupt())
        log(LogError, text(QT_TRANSLATE_NOOP("standalone::AppletRun", "运行报告的数据已损坏")));

    if (leftWell && reader.isComplete() && m_endReason == protocol::Finished)
        return RunFinished;
    return stopAsked ? RunStopped : RunCrashed;
}

/// Sends the start, and a stop that was asked for before the child was there.
void AppletRun::beginCommands(ChildProcess& child)
{
    unsigned char command[protocol::MaxRecord];
    const std::size_t size =
        protocol::putStart(command, m_request.sequenceId.data(), m_request.sequenceId.size());
    child.sendCommand(command, size);
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_child = &child;
    if (m_stopAsked)
        sendStop();
}

/// In milliseconds, rounded up; -1 while no kill is due.
int AppletRun::timeUntilKill() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_killAt == Clock::time_point::max())
        return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_killAt - Clock::now());
    return static_cast<int>(std::max<std::int64_t>(0, left.count()));
}

void AppletRun::log(int level, const std::string& line)
{
    const auto callback = RunnerRegistry::instance().logCallback(m_request.appName);
    if (callback && !m_silent)
        callback(m_request.appName.c_str(), static_cast<DrelLogLevel>(level), line.c_str());
}

void AppletRun::onBlock(const std::string& sequenceId, const std::string& blockId, double progress,
                        int result)
{
    if (CallbackFuncsImp::m_cb && !m_silent)
        CallbackFuncsImp::m_cb(m_request.appName.c_str(), sequenceId.c_str(), blockId.c_str(),
                               progress, result);
}

void AppletRun::onSequence(const std::string& sequenceId, bool isEnd)
{
    if (CallbackFuncsImp::m_seqCb && !m_silent)
        CallbackFuncsImp::m_seqCb(m_request.appName.c_str(), sequenceId.c_str(), isEnd);
}

void AppletRun::onTemplateSequence(const std::string& templateId, const std::string& sequenceId,
                                   bool isEnd)
{
    if (CallbackFuncsImp::m_tempSeqCb && !m_silent)
        CallbackFuncsImp::m_tempSeqCb(m_request.appName.c_str(), templateId.c_str(),
                                      sequenceId.c_str(), isEnd);
}

void AppletRun::onLog(int level, const std::string& line)
{
    log(level < LogDebug ? LogDebug : level > LogError ? LogError : level, line);
}

void AppletRun::onEnd(protocol::EndReason reason)
{
    m_endReason = reason;
}

} // namespace standalone
