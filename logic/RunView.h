#pragma once

#include "logic/BreakPointColumn.h"
#include "logic/RunReportQueue.h"
#include "logic/RunSheet.h"

#include <QObject>
#include <QPersistentModelIndex>
#include <QPointer>

#include <memory>
#include <vector>

class QProgressBar;
class QTableView;
class QTimer;
class QTreeView;

/// The run tab: follows a run row by row, and through the sequences that it calls.
///
/// A report lands on the rows of its own sequence. A change of sequence brings the called one on
/// screen with its rows as new; the first report of the caller after that brings the caller back,
/// with its rows as they were.
///
/// GUI thread, but for the two operations that say otherwise.
class RunView : public QObject
{
    Q_OBJECT
public:
    /// Must go before the two views.
    RunView(QTreeView* tree, QTableView* table);
    ~RunView() override;

    /// Builds the rows of everything that the run may reach, in place of those of an earlier run,
    /// and starts to follow reports. Reports that came in since expect() are kept, others aren't.
    void start(const QString& appName, const QString& sequenceId, const QString& progressText);

    /// A run is about to start, whose reports may come before start().
    void expect();

    /// Lands what waits and closes the running row; the rows on screen stay until the next start.
    void stop();

    /// Lands the waiting reports; called every 30 ms of a run.
    void landReports();

    /// Marks the row reported last, and on a failure every row that still runs, with the outcome of
    /// the run. A row that failed stays a failure.
    void finishRow(bool success);
    /// The run on screen is being ended by a stop: rows that have not come to their own end will
    /// say so.
    void noteStop() { m_isStopped = m_isRunning; }

    bool isRunning() const { return m_isRunning; }
    /// The rows on screen, the last ones after a run; null before the first.
    const RunSheet* onScreen() const { return m_onScreen; }

    /// The handle of the log's progress; -1 when there is none.
    int progressHandle() const { return m_progressHandle; }

    /// The widths of the columns; from now on the user's.
    void setColumnWidths(const QList<int>& widths);

    /// Any thread.
    void notifyRunState(const QString& seqUuid, const QString& blockuuid, int result,
                        double iProgress);
    /// Any thread. @p templateId is empty for a sequence of the applet.
    void notifyGoto(const QString& gotoSeqUuid, bool isEnd, const QString& templateId);

signals:
    /// Emitted on the reporting thread with the reports locked, at the end of a run on the GUI's.
    void sigProcessPrograss(double progress, int state);
    /// Other rows came on screen.
    void sheetShown();

private:
    using Sheets = std::vector<std::unique_ptr<RunSheet>>;

    RunSheet* sheetOf(const QString& templateId, const QString& sequenceId);
    RunSheet* addSheet(const RunTarget& target);
    RunSheet* reach(const QString& templateId, const QString& sequenceId);
    void followGoto(const runProcessState& report);
    void flush();
    void putOnScreen(RunSheet* sheet);
    void showProgress();
    void fitFirstColumn();
    void finishLogProgress();

    QTreeView* m_tree;
    std::unique_ptr<BreakPointColumn> m_column;
    RunReportQueue m_queue;
    QTimer* m_runTimer;
    QString m_runAppName;
    QString m_runStartSequenceId;
    bool m_isRunning = false;
    bool m_isExpected = false;
    bool m_isStopped = false;
    int m_progressHandle = -1;

    std::vector<RunTarget> m_unreached;                     ///< planned, without rows yet
    Sheets m_runSheets;                                     ///< the start sequence first
    QHash<QPair<QString, QString>, RunSheet*> m_sheetByIds; ///< template and sequence
    RunSheet* m_current = nullptr;                          ///< where the run is
    RunSheet* m_onScreen = nullptr;                         ///< what the views show
    RunSheet* m_lastLanded = nullptr;
    RunCursor m_cursor;
    QPointer<QProgressBar> m_bar;
    QPersistentModelIndex m_barIndex;
    QStandardItem* m_shownStart = nullptr; ///< the row that was made current last
};
