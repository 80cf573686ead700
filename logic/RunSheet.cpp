#include "logic/RunSheet.h"

#include "logic/RowIndex.h"

using run_states::Outcome;

RunSheet::RunSheet(const RunTarget& target)
    : m_templateId(target.templateId), m_sequenceId(target.sequenceId), m_title(target.title),
      m_owner(target.owner), m_rows(new RowIndex(&m_tree))
{
    flow_loader::fill(&m_tree, target.flows, step_rows::Purpose::Run);
}

int RunSheet::rowCount() const
{
    return m_rows->items().size();
}

void RunSheet::land(const runProcessState& report, RunCursor& cursor)
{
    QStandardItem* row = m_rows->find(report.blockuuid);
    if (!row)
        return;
    cursor.lastRowUuid = report.blockuuid;
    if (m_running != row)
        closeRunning(run_states::closingOutcome(cursor.lastResult));

    const Outcome outcome = run_states::outcome(report.iProgress, report.result);
    cursor.lastResult = outcome == Outcome::Started ? 0 : report.result;
    switch (outcome) {
    case Outcome::Started:
        m_started = row;
        m_running = row;
        m_runningValue = 0;
        break;
    case Outcome::Running:
        m_running = row;
        m_runningValue = int(report.iProgress);
        break;
    case Outcome::Succeeded:
    case Outcome::Failed:
    case Outcome::Stopped: // of no report
        m_running = nullptr;
        mark(row, outcome);
        break;
    }
}

void RunSheet::closeRunning(Outcome outcome)
{
    if (!m_running)
        return;
    mark(m_running, outcome);
    m_running = nullptr;
}

void RunSheet::finish(const QString& blockUuid, Outcome outcome)
{
    QStandardItem* row = m_rows->find(blockUuid);
    if (!row)
        return;
    if (m_running == row)
        m_running = nullptr;
    mark(row, outcome);
}

void RunSheet::reset()
{
    m_tree.forgetMarks();
    m_hasChanged = true;
    m_running = nullptr;
    m_started = nullptr;
}

void RunSheet::mark(QStandardItem* row, Outcome outcome)
{
    m_tree.mark(row, outcome);
    m_hasChanged = true;
}
