#pragma once

#include "logic/WaitingReports.h"

#include <QHash>
#include <QMutex>
#include <QStringList>
#include <QVector>

#include <functional>
#include <vector>

/// The templates that the sequences of a run were called in, innermost last.
class CalledTemplates
{
public:
    /// Empty outside of all templates.
    QString inForce() const { return m_ids.isEmpty() ? QString() : m_ids.last(); }
    /// An empty @p templateId is a sequence of what is in force.
    void enter(const QString& templateId);
    void leave();

private:
    static constexpr int MostKept = 10000; ///< calls nested deeper are counted only
    QStringList m_ids;
    int m_depth = 0;
};

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
    /// waits. A template is in force for later reports, those of sequences that it calls too, until
    /// the change that leaves it; then the one it was called from is again.
    void attachGoto(const QString& gotoSeqUuid, bool isEnd, const QString& templateId);

    /// Takes all waiting reports, first to last.
    std::vector<runProcessState> take();

    /// Takes reports from here on, of a run that starts: what waits, the templates in force and the
    /// blocks are forgotten.
    void open();
    /// The same, but takes none any more, as before the first open().
    void close();

private:
    void reset(bool isOpen);

    const ProgressSink m_sink;
    QMutex m_stateMutex; ///< guards all below
    WaitingReports m_stateQueue;
    bool m_isOpen = false;
    CalledTemplates m_templates;
    QHash<QString, int> m_runBlockPlaces;
    int m_runBlockCount = 0;
};
