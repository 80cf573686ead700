#include "standalone/runtime/AppletRun.h"

#include "model/services/applet_runtime.h"
#include "standalone/runtime/ChildProcess.h"
#include "standalone/runtime/LineSplitter.h"
#include "standalone/runtime/RunnerRegistry.h"
#include "standalone/runtime/run_account.h"

#include <QCoreApplication>

#include <algorithm>
#include <future>
#include <memory>
#include <system_error>

namespace standalone {

namespace {

std::string runText(const char* source, const QString& detail = QString())
{
    const QString line = QCoreApplication::translate("standalone::AppletRun", source);
    return (detail.isEmpty() ? line : line.arg(detail)).toStdString();
}

/// Callbacks take texts that end at their first NUL: a text that holds one goes on behind a sign
/// for it.
std::string withoutNul(const std::string& text)
{
    static const char Sign[] = "\xe2\x90\x80"; // U+2400
    std::string whole;
    std::size_t begin = 0;
    for (std::size_t at = 0; (at = text.find('\0', begin)) != std::string::npos; begin = at + 1)
        whole.append(text, begin, at - begin).append(Sign);
    return whole.append(text, begin, std::string::npos);
}

/// A thread of its own keeps a child that can't be waited for from staying a zombie. It ends with
/// the child, or with this process. Without a thread the zombie stays as long.
void waitElsewhere(std::unique_ptr<ChildProcess> child)
{
    child->killAtOnce();
    ChildProcess* const left = child.release();
    try {
        std::thread([left] { delete left; }).detach();
    } catch (const std::system_error&) {
        left->forget();
        delete left;
    }
}

int millisecondsUntil(std::chrono::steady_clock::time_point time)
{
    if (time == std::chrono::steady_clock::time_point::max())
        return -1;
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(time - std::chrono::steady_clock::now());
    return static_cast<int>(std::max<std::int64_t>(0, left.count()));
}

} // namespace

AppletRun::AppletRun(Request request)
    : m_request(std::move(request)), m_record(std::make_shared<RunRecord>(m_request.recordFolder)),
      m_requests(m_request.appName, m_commands)
{
}

bool AppletRun::start()
{
    try {
        m_thread = std::thread(&AppletRun::run, this);
        return true;
    } catch (const std::system_error&) {
        m_running = false;
        m_over = true;
        return false;
    }
}

AppletRun::~AppletRun()
{
    if (m_thread.joinable())
        m_thread.join();
}

void AppletRun::stop(std::chrono::milliseconds patience)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopAsked = true;
        m_killAt = std::min(m_killAt, Clock::now() + patience);
    }
    sendStop();
    m_requests.close();
}

void AppletRun::sendStop()
{
    unsigned char command[protocol::MaxSmallRecord];
    m_commands->send(command, protocol::putStop(command));
    m_commands->wake();
}

void AppletRun::run()
{
    const RunEvent event = watchChild();
    writeRecord();
    m_running = false;
    if (m_request.onRunEvent && !m_silent) {
        sdk_ui_interface::processedit::RunInfo info{m_request.appName, m_request.sequenceId};
        m_request.onRunEvent(&info, event);
    }
    m_over = true;
}

RunEvent AppletRun::watchChild()
{
    TraceFile trace;
    trace.create(); // without it a crash tells less
    auto child = std::make_unique<ChildProcess>();
    if (!child->start(m_request.program, {m_request.module, QString::number(m_request.memoryLimit)},
                      trace.handle())) {
        log(LogError, runText(QT_TRANSLATE_NOOP("standalone::AppletRun", "运行程序启动失败: %1"),
                              child->error()));
        return RunCrashed;
    }
    m_commands->setChild(child.get());
    beginCommands();
    RunAccount account;
    listen(*child, account);
    m_commands->setChild(nullptr);
    m_requests.close();

    const auto patience = std::min<Clock::duration>(DeathPatience, m_leaveAt - Clock::now());
    if (const auto end = child->reapWithin(std::chrono::ceil<std::chrono::milliseconds>(patience)))
        account.end = *end;
    else
        account.isLeft = true;
    account.trace = trace.read();
    const QString leftProcesses = account.leftProcesses();
    if (!leftProcesses.isEmpty())
        log(LogWarning, leftProcesses.toStdString());

    const bool exitedWell = account.isLeft || (account.end.hasExited && account.end.number == 0);
    if (account.isLeft)
        waitElsewhere(std::move(child));

    const bool leftWell = exitedWell && m_reader.isComplete();
    if (leftWell && m_endReason == protocol::Finished)
        return RunFinished;
    if (!leftWell || m_endReason != protocol::Stopped) {
        account.appName = QString::fromLocal8Bit(m_request.appName.c_str());
        account.fault = QString::fromUtf8(m_reader.fault());
        account.memoryLimit = m_request.memoryLimit;
        account.hasTold = m_hasToldFault;
        tellAccount(account);
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_stopAsked && !m_reader.isCorrupt() ? RunStopped : RunCrashed;
}

/// Hands over all that the child says, until it has ended or could not be made to.
void AppletRun::listen(ChildProcess& child, RunAccount& account)
{
    LineSplitter output([this](const std::string& line) { log(LogInfo, line); });
    LineSplitter errors([this](const std::string& line) { onLog(LogError, line); });
    const auto sink = [&](ChildProcess::Stream stream, const char* data, std::size_t size) {
        if (stream == ChildProcess::Output)
            output.feed(data, size);
        else if (stream == ChildProcess::Errors)
            errors.feed(data, size);
        else if (!m_reader.isCorrupt() &&
                 !m_reader.feed(reinterpret_cast<const unsigned char*>(data), size))
            kill(child);
    };
    bool isOpen = true;
    while (isOpen && Clock::now() < m_leaveAt) {
        // Nobody hears what is silenced, and the GUI thread may be waiting for its end. What a
        // killed child has left in its pipes is all that it says any more.
        const bool wasForced =
            m_leaveAt != Clock::time_point::max() && m_forceAt == Clock::time_point::max();
        if (m_backlog->isFull() && !m_silent && !wasForced)
            child.waitForWake(timeUntilAction());
        else
            isOpen = child.pump(timeUntilAction(), sink);
        writeRecord();
        if (Clock::now() >= m_forceAt) {
            child.killAtOnce();
            m_forceAt = Clock::time_point::max();
            m_leaveAt = Clock::now() + DeathPatience;
        }
        if (timeUntilKill() == 0) {
            kill(child);
            account.wasKilled = true;
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_killAt = Clock::time_point::max();
        }
    }
    output.finish();
    errors.finish();
    writeRecord();
}

void AppletRun::kill(ChildProcess& child)
{
    child.kill();
    if (m_leaveAt != Clock::time_point::max())
        return;
    m_forceAt = Clock::now() + SupervisorPatience;
    m_leaveAt = m_forceAt + DeathPatience;
}

void AppletRun::tellAccount(const RunAccount& account)
{
    // A report that still waited went with the child.
    const auto& running = account.trace.running;
    if (running && running->stepId != m_lastStepId)
        onBlock(running->sequenceId, running->stepId, 0.0, 0);
    QString lines = account.reason();
    const QString steps = stepsByName(account);
    if (!steps.isEmpty())
        lines += (lines.isEmpty() ? QString() : QStringLiteral("\n")) + steps;
    if (!lines.isEmpty())
        log(LogError, lines.toStdString());
}

/// The model is the GUI thread's: it is asked there, unless that thread is busy for long.
QString AppletRun::stepsByName(const RunAccount& account) const
{
    constexpr std::chrono::milliseconds Patience{1000};
    constexpr std::chrono::milliseconds Slice{10};
    QCoreApplication* application = QCoreApplication::instance();
    if (!account.trace.running && account.trace.before.empty())
        return QString();
    if (application && !m_silent) {
        const auto promise = std::make_shared<std::promise<QString>>();
        std::future<QString> steps = promise->get_future();
        QMetaObject::invokeMethod(
            application, [promise, account] { promise->set_value(account.steps(true)); },
            Qt::QueuedConnection);
        const auto giveUpAt = Clock::now() + Patience;
        while (!m_silent && Clock::now() < giveUpAt) {
            if (steps.wait_for(Slice) == std::future_status::ready)
                return steps.get();
        }
    }
    return account.steps(false);
}

/// Sends the start, and a stop that was asked for before the child was there.
void AppletRun::beginCommands()
{
    unsigned char command[protocol::MaxRecord];
    const std::size_t size =
        protocol::putStart(command, m_request.sequenceId.data(), m_request.sequenceId.size());
    m_commands->send(command, size);
    bool stopAsked = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        stopAsked = m_stopAsked;
    }
    if (stopAsked)
        sendStop();
}

/// In milliseconds, rounded up; -1 while no kill is due.
int AppletRun::timeUntilKill() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return millisecondsUntil(m_killAt);
}

/// The same, to whatever is due first.
int AppletRun::timeUntilAction() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return millisecondsUntil(std::min({m_killAt, m_forceAt, m_leaveAt}));
}

void AppletRun::log(int level, const std::string& line)
{
    const std::string text = withoutNul(line);
    complainOfRecord(m_record->add(text));
    tell(level, text);
}

void AppletRun::writeRecord()
{
    complainOfRecord(m_record->flush());
}

void AppletRun::complainOfRecord(const QString& reason)
{
    if (!reason.isEmpty())
        tell(LogWarning,
             runText(QT_TRANSLATE_NOOP("standalone::AppletRun", "运行记录无法写入, 运行继续: %1"),
                     reason));
}

void AppletRun::tell(int level, const std::string& text)
{
    const auto callback = RunnerRegistry::instance().logCallback(m_request.appName);
    if (!callback || m_silent)
        return;
    m_backlog->add(text.size());
    callback(m_request.appName.c_str(), static_cast<DrelLogLevel>(level), text.c_str());
}

void AppletRun::onBlock(const std::string& sequenceId, const std::string& blockId, double progress,
                        int result)
{
    m_lastStepId = blockId;
    if (!CallbackFuncsImp::m_cb || m_silent)
        return;
    m_backlog->add(sequenceId.size() + blockId.size());
    CallbackFuncsImp::m_cb(m_request.appName.c_str(), sequenceId.c_str(), blockId.c_str(), progress,
                           result);
}

void AppletRun::onSequence(const std::string& sequenceId, bool isEnd)
{
    if (!CallbackFuncsImp::m_seqCb || m_silent)
        return;
    m_backlog->add(sequenceId.size());
    CallbackFuncsImp::m_seqCb(m_request.appName.c_str(), sequenceId.c_str(), isEnd);
}

void AppletRun::onTemplateSequence(const std::string& templateId, const std::string& sequenceId,
                                   bool isEnd)
{
    if (!CallbackFuncsImp::m_tempSeqCb || m_silent)
        return;
    m_backlog->add(templateId.size() + sequenceId.size());
    CallbackFuncsImp::m_tempSeqCb(m_request.appName.c_str(), templateId.c_str(), sequenceId.c_str(),
                                  isEnd);
}

void AppletRun::onLog(int level, const std::string& line)
{
    m_hasToldFault = m_hasToldFault || level >= LogError;
    log(level < LogDebug ? LogDebug : level > LogError ? LogError : level, line);
}

void AppletRun::onRequest(std::uint32_t id, protocol::RequestKind kind,
                          const protocol::Texts& texts)
{
    if (m_silent)
        return;
    std::size_t bytes = 0;
    for (const std::string& text : texts)
        bytes += text.size();
    m_backlog->add(bytes);
    if (const char* fault = m_requests.take(id, kind, texts))
        m_reader.refuse(fault);
}

void AppletRun::onEnd(protocol::EndReason reason)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (reason == protocol::Stopped && !m_stopAsked)
        m_reader.refuse("没有停止请求就报告了停止");
    m_endReason = reason;
}

} // namespace standalone
