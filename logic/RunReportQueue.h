#pragma once

#include "logic/WaitingReports.h"

#include <QHash>
#include <QMutex>
#include <QVector>

#include <functional>
#include <vector>

/// The reports of a run on their way from the runner's thread to the run view. Every operation may
/// be called on any thread and takes constant time, but for setBlocks and clear.
class RunReportQueue
{
public:
    /// Told the progress of the whole run, 0 to 100, and the step's result. Called on the reporting
    /// thread with the queue locked: it must be quick and must not call the queue.
    using ProgressSink = std::function<void(double progress, int result)>;

    explicit RunReportQueue(ProgressSink sink);

    /// Every block that the run may report, in the order of the run. Reports of other blocks are
    /// queued but don't move the progress.
    void setBlocks(const QVector<QString>& blockUuids);

    /// Appends a report, unless an equal one waits already.
    void report(const QString& seqUuid, const QString& blockUuid, int result, double progress);

    /// Attaches a change of sequence to the report that waits last; it is kept by itself when none
    /// waits. A template stays in force for later reports until a change ends it.
    void attachGoto(const QString& gotoSeqUuid, bool isEnd, const QString& templateId);

    /// Takes all waiting reports, first to last.
    std::vector<runProcessState> take();

    /// Forgets what waits, the template in force and the blocks.
    void clear();

private:
    const ProgressSink m_sink;
    QMutex m_stateMutex; ///< guards all below
    WaitingReports m_stateQueue;
    QString m_pendingTemplateId;
    QHash<QString, int> m_runBlockPlaces;
    int m_runBlockCount = 0;
};
