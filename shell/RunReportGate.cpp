#include "shell/RunReportGate.h"

#include "logic/LogicView.h"

#include <QMutexLocker>

void RunReportGate::setRunningApp(const QString& appName)
{
    QMutexLocker lock(&m_mutex);
    m_runningApp = appName;
}

QString RunReportGate::runningApp() const
{
    QMutexLocker lock(&m_mutex);
    return m_runningApp;
}

void RunReportGate::close()
{
    QMutexLocker lock(&m_mutex);
    m_view = nullptr;
}

void RunReportGate::report(const QString& appName, const QString& sequenceId,
                           const QString& blockUuid, double progress, int result)
{
    QMutexLocker lock(&m_mutex);
    if (m_view && !m_runningApp.isEmpty() && appName == m_runningApp)
        m_view->notifyRunState(sequenceId, blockUuid, result, progress);
}

void RunReportGate::sequenceChange(const QString& appName, const QString& sequenceId, bool isEnd,
                                   const QString& templateId)
{
    QMutexLocker lock(&m_mutex);
    if (m_view && !m_runningApp.isEmpty() && appName == m_runningApp)
        m_view->notifyGoto(sequenceId, isEnd, templateId);
}
