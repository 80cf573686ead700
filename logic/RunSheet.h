#pragma once

#include "logic/RunModel.h"
#include "logic/runProcessState.h"
#include "logic/run_plan.h"
#include "logic/run_states.h"

#include <QStandardItemModel>

#include <memory>
#include <utility>

class RowIndex;

/// What the run reported last, whichever sequence it was in.
struct RunCursor
{
    QString lastRowUuid;
    int lastResult = -1; ///< -1 between runs
};

/// The rows of one sequence in a run. Reports land in constant time, without a signal of the model.
/// GUI thread only.
class RunSheet
{
public:
    explicit RunSheet(const RunTarget& target);

    const QString& templateId() const { return m_templateId; }
    const QString& sequenceId() const { return m_sequenceId; }
    const QString& title() const { return m_title; }
    /// As RunTarget::owner.
    const std::shared_ptr<const processTemplateInfo>& owner() const { return m_owner; }
    QStandardItemModel* treeModel() { return &m_tree; }
    QStandardItemModel* tableModel() { return &m_table; }
    int rowCount() const; ///< of the tree, at all depths

    /// Lands a report, and closes the row that was running before it. A block without a row
    /// changes nothing.
    void land(const runProcessState& report, RunCursor& cursor);

    /// Ends the running row, if there is one.
    void closeRunning(run_states::Outcome outcome);

    /// Ends the row of @p blockUuid, if there is one.
    void finish(const QString& blockUuid, run_states::Outcome outcome);

    /// Takes all rows back to the state before the run: the sequence is entered anew.
    void reset();

    /// Whether any row has another state than at the last call.
    bool takeChanged() { return std::exchange(m_hasChanged, false); }

    /// The row with a progress bar, in column 0, or null; and where its bar stands.
    QStandardItem* runningRow() const { return m_running; }
    int runningValue() const { return m_runningValue; }

    /// The row that started last, in column 0, or null.
    QStandardItem* startedRow() const { return m_started; }

private:
    void mark(QStandardItem* row, run_states::Outcome outcome);

    QString m_templateId;
    QString m_sequenceId;
    QString m_title;
    std::shared_ptr<const processTemplateInfo> m_owner;
    RunModel m_tree;
    QStandardItemModel m_table;
    RowIndex* m_rows;
    QStandardItem* m_running = nullptr;
    int m_runningValue = 0;
    QStandardItem* m_started = nullptr;
    bool m_hasChanged = false;
};
