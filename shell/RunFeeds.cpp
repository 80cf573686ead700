#include "shell/RunFeeds.h"

#include "shell/AppletLogFeed.h"
#include "shell/LatestProgress.h"
#include "shell/LogicMaster.h"
#include "shell/ProcessEditNotifyTool.h"
#include "shell/RunReportGate.h"

#include "logic/LogicView.h"

RunFeeds::RunFeeds(LogicView* view, QObject* parent)
    : QObject(parent), m_gate(std::make_shared<RunReportGate>(view)),
      m_logFeed(std::make_shared<AppletLogFeed>(
          this,
          [this](const QString& appName, const QString& text) { emit logLine(appName, text); })),
      m_progress(new LatestProgress(this))
{
    connectReports();
    // Emitted on the reporting thread, from behind the gate: this object is there then.
    connect(view, &LogicView::sigProcessPrograss, m_progress, &LatestProgress::put,
            Qt::DirectConnection);
    connect(m_progress, &LatestProgress::changed, this, &RunFeeds::progressChanged);
}

RunFeeds::~RunFeeds()
{
    close();
}

// These come on the runtime's threads: only the gate and the log feed, which outlive this object,
// may be touched.
void RunFeeds::connectReports()
{
    const LogicMaster* master = LogicMaster::instance();
    const auto gate = m_gate;
    connect(
        master, &LogicMaster::NotifyRunStateSig, this,
        [gate](const QString& appName, const QString& sequenceId, const QString& blockUuid,
               double progress,
               int result) { gate->report(appName, sequenceId, blockUuid, progress, result); },
        Qt::DirectConnection);
    connect(
        master, &LogicMaster::NotifyGotoSequenceSig, this,
        [gate](const QString& appName, const QString& sequenceId, bool isEnd) {
            gate->sequenceChange(appName, sequenceId, isEnd, QString());
        },
        Qt::DirectConnection);
    connect(
        master, &LogicMaster::NotifyGotoTemplateSequenceSig, this,
        [gate](const QString& appName, const QString& templateId, const QString& sequenceId,
               bool isEnd) { gate->sequenceChange(appName, sequenceId, isEnd, templateId); },
        Qt::DirectConnection);
    const auto logFeed = m_logFeed;
    connect(
        ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::cAppletLogSignal, this,
        [logFeed](const QString& appName, int, const QString& message) {
            logFeed->put(appName, message);
        },
        Qt::DirectConnection);
}

void RunFeeds::setRunningApp(const QString& appName)
{
    m_gate->setRunningApp(appName);
}

void RunFeeds::close()
{
    m_gate->close();
    m_logFeed->close();
}

void RunFeeds::report(const QString& appName, const QString& sequenceId, const QString& blockUuid,
                      double progress, int result)
{
    m_gate->report(appName, sequenceId, blockUuid, progress, result);
}

void RunFeeds::sequenceChange(const QString& appName, const QString& sequenceId, bool isEnd,
                              const QString& templateId)
{
    m_gate->sequenceChange(appName, sequenceId, isEnd, templateId);
}
