#include "logic/RunReportQueue.h"

#include "logic/run_states.h"

#include <QMutexLocker>

void CalledTemplates::enter(const QString& templateId)
{
    if (++m_depth <= MostKept)
        m_ids.append(templateId.isEmpty() ? inForce() : templateId);
}

void CalledTemplates::leave()
{
    // A run that says so more often than it entered is at its beginning again.
    if (m_depth > 0 && --m_depth < m_ids.size())
        m_ids.removeLast();
}

RunReportQueue::RunReportQueue(ProgressSink sink) : m_sink(std::move(sink)) {}

void RunReportQueue::setBlocks(const QVector<QString>& blockUuids)
{
    QHash<QString, int> places;
    places.reserve(blockUuids.size());
    // Backwards, so that of two equal ones the first place stands.
    for (int place = blockUuids.size() - 1; place >= 0; --place)
        places.insert(blockUuids[place], place);
    const QMutexLocker lock(&m_stateMutex);
    m_runBlockPlaces.swap(places);
    m_runBlockCount = blockUuids.size();
}

void RunReportQueue::report(const QString& seqUuid, const QString& blockUuid, int result,
                            double progress)
{
    runProcessState state;
    state.seqUuid = seqUuid;
    state.blockuuid = blockUuid;
    state.iProgress = progress;
    state.result = result;

    const QMutexLocker lock(&m_stateMutex);
    if (!m_isOpen)
        return;
    state.templateId = m_templates.inForce();
    m_stateQueue.append(std::move(state));
    const auto place = m_runBlockPlaces.constFind(blockUuid);
    if (place != m_runBlockPlaces.constEnd())
        m_sink(run_states::totalProgress(*place, m_runBlockCount, progress), result);
}

void RunReportQueue::attachGoto(const QString& gotoSeqUuid, bool isEnd, const QString& templateId)
{
    const QMutexLocker lock(&m_stateMutex);
    if (!m_isOpen)
        return;
    runProcessState& last = m_stateQueue.last();
    last.gotoSeqUuid = gotoSeqUuid;
    last.isEnd = isEnd;
    last.hasGotoTemplate = !templateId.isEmpty();
    if (last.hasGotoTemplate)
        last.gotoTemplateId = templateId;
    last.hasGoto = true;
    if (isEnd)
        m_templates.leave();
    else
        m_templates.enter(templateId);
}

std::vector<runProcessState> RunReportQueue::take()
{
    const QMutexLocker lock(&m_stateMutex);
    return m_stateQueue.take();
}

void RunReportQueue::open()
{
    reset(true);
}

void RunReportQueue::close()
{
    reset(false);
}

void RunReportQueue::reset(bool isOpen)
{
    const QMutexLocker lock(&m_stateMutex);
    m_isOpen = isOpen;
    m_stateQueue.take();
    m_templates = {};
    m_runBlockPlaces.clear();
    m_runBlockCount = 0;
}
