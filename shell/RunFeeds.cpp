#include "shell/RunFeeds.h"

#include "shell/AppletLogFeed.h"
#include "shell/LatestProgress.h"
#include "shell/RunFeedHub.h"
#include "shell/RunReportGate.h"

#include "logic/LogicView.h"

RunFeeds::RunFeeds(LogicView* view, QObject* parent)
    : QObject(parent), m_gate(std::make_shared<RunReportGate>(view)),
      m_logFeed(std::make_shared<AppletLogFeed>(
          [this] { QMetaObject::invokeMethod(this, &RunFeeds::takeLog, Qt::QueuedConnection); })),
      m_progress(new LatestProgress(this))
{
    RunFeedHub::instance()->add({m_gate, m_logFeed});
    // Emitted on the reporting thread, from behind the gate: this object is there then.
    connect(view, &LogicView::sigProcessPrograss, m_progress, &LatestProgress::put,
            Qt::DirectConnection);
    connect(m_progress, &LatestProgress::changed, this, &RunFeeds::progressChanged);
}

RunFeeds::~RunFeeds()
{
    close();
}

void RunFeeds::setRunningApp(const QString& appName)
{
    m_gate->setRunningApp(appName);
}

void RunFeeds::takeLog()
{
    const auto lines = m_logFeed->take();
    for (const AppletLogFeed::Line& line : lines)
        emit logLine(line.appName, line.text);
}

void RunFeeds::close()
{
    RunFeedHub::instance()->remove(m_gate);
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

#include "moc_RunFeeds.cpp"
