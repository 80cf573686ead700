#include "shell/bridge/RunFeedHub.h"

#include "logic/run/RunInbox.h"
#include "shell/bridge/LogicMaster.h"
#include "shell/bridge/ProcessEditNotifyTool.h"

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

std::shared_ptr<const RunFeedHub::Inboxes> RunFeedHub::inboxes() const
{
    QMutexLocker lock(&m_mutex);
    return m_inboxes;
}

void RunFeedHub::setInboxes(Inboxes inboxes)
{
    auto changed = std::make_shared<const Inboxes>(std::move(inboxes));
    QMutexLocker lock(&m_mutex);
    m_inboxes.swap(changed);
}

void RunFeedHub::add(std::shared_ptr<RunInbox> inbox)
{
    Inboxes changed = *inboxes();
    changed.push_back(std::move(inbox));
    setInboxes(std::move(changed));
}

void RunFeedHub::remove(const std::shared_ptr<RunInbox>& inbox)
{
    Inboxes changed = *inboxes();
    changed.erase(std::remove(changed.begin(), changed.end(), inbox), changed.end());
    setInboxes(std::move(changed));
}

void RunFeedHub::onRunState(const QString& appName, const QString& sequenceId,
                            const QString& blockUuid, double progress, int result) const
{
    const auto all = inboxes();
    for (const auto& inbox : *all)
        inbox->reportOf(appName, sequenceId, blockUuid, progress, result);
}

void RunFeedHub::onSequence(const QString& appName, const QString& sequenceId, bool isEnd) const
{
    onTemplateSequence(appName, QString(), sequenceId, isEnd);
}

void RunFeedHub::onTemplateSequence(const QString& appName, const QString& templateId,
                                    const QString& sequenceId, bool isEnd) const
{
    const auto all = inboxes();
    for (const auto& inbox : *all)
        inbox->sequenceChangeOf(appName, sequenceId, isEnd, templateId);
}

void RunFeedHub::onLog(const QString& appName, int, const QString& message) const
{
    const auto all = inboxes();
    for (const auto& inbox : *all)
        inbox->line(appName, message);
}

#include "moc_RunFeedHub.cpp"
