#include "shell/RunFeedHub.h"

#include "shell/AppletLogFeed.h"
#include "shell/LogicMaster.h"
#include "shell/ProcessEditNotifyTool.h"
#include "shell/RunReportGate.h"

#include <QMutexLocker>

#include <algorithm>

RunFeedHub* RunFeedHub::instance()
{
    static RunFeedHub hub;
    return &hub;
}

RunFeedHub::RunFeedHub()
{
    const LogicMaster* master = LogicMaster::instance();
    connect(master, &LogicMaster::NotifyRunStateSig, this, &RunFeedHub::onRunState,
            Qt::DirectConnection);
    connect(master, &LogicMaster::NotifyGotoSequenceSig, this, &RunFeedHub::onSequence,
            Qt::DirectConnection);
    connect(master, &LogicMaster::NotifyGotoTemplateSequenceSig, this,
            &RunFeedHub::onTemplateSequence, Qt::DirectConnection);
    connect(ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::cAppletLogSignal, this,
            &RunFeedHub::onLog, Qt::DirectConnection);
}

std::shared_ptr<const RunFeedHub::Windows> RunFeedHub::windows() const
{
    QMutexLocker lock(&m_mutex);
    return m_windows;
}

void RunFeedHub::setWindows(Windows windows)
{
    auto changed = std::make_shared<const Windows>(std::move(windows));
    QMutexLocker lock(&m_mutex);
    m_windows.swap(changed);
}

void RunFeedHub::add(Window window)
{
    Windows changed = *windows();
    changed.push_back(std::move(window));
    setWindows(std::move(changed));
}

void RunFeedHub::remove(const std::shared_ptr<RunReportGate>& gate)
{
    Windows changed = *windows();
    changed.erase(std::remove_if(changed.begin(), changed.end(),
                                 [&gate](const Window& window) { return window.gate == gate; }),
                  changed.end());
    setWindows(std::move(changed));
}

void RunFeedHub::onRunState(const QString& appName, const QString& sequenceId,
                            const QString& blockUuid, double progress, int result) const
{
    const auto all = windows();
    for (const Window& window : *all)
        window.gate->report(appName, sequenceId, blockUuid, progress, result);
}

void RunFeedHub::onSequence(const QString& appName, const QString& sequenceId, bool isEnd) const
{
    onTemplateSequence(appName, QString(), sequenceId, isEnd);
}

void RunFeedHub::onTemplateSequence(const QString& appName, const QString& templateId,
                                    const QString& sequenceId, bool isEnd) const
{
    const auto all = windows();
    for (const Window& window : *all)
        window.gate->sequenceChange(appName, sequenceId, isEnd, templateId);
}

void RunFeedHub::onLog(const QString& appName, int, const QString& message) const
{
    const auto all = windows();
    for (const Window& window : *all)
        window.log->put(appName, message);
}

#include "moc_RunFeedHub.cpp"
