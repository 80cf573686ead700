#include "logic/RunSheet.h"

#include "logic/RowIndex.h"
#include "logic/logic_roles.h"

#include <QSignalBlocker>

using run_states::Outcome;

namespace {

void write(QStandardItem* row, Outcome outcome)
{
    QStandardItem* state = step_rows::cell(row, logic_columns::State);
    if (!state) {
        state = new QStandardItem;
        row->parent()->setChild(row->row(), logic_columns::State, state);
    }
    state->setText(run_states::text(outcome));
    state->setBackground(run_states::background(outcome));
}

} // namespace

RunSheet::RunSheet(const RunTarget& target)
    : m_templateId(target.templateId), m_sequenceId(target.sequenceId),
      m_rows(new RowIndex(&m_tree))
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

bool RunSheet::finish(const QString& blockUuid, Outcome outcome)
{
    QStandardItem* row = m_rows->find(blockUuid);
    if (!row)
        return false;
    if (m_running == row)
        m_running = nullptr;
    mark(row, outcome);
    return true;
}

void RunSheet::reset()
{
    ++m_round;
    m_hasOldMarks = !m_marks.isEmpty();
    m_unwritten.clear();
    m_running = nullptr;
    m_started = nullptr;
}

void RunSheet::mark(QStandardItem* row, Outcome outcome)
{
    Mark& entry = m_marks[row];
    if (!entry.waiting || entry.round != m_round)
        m_unwritten.append(row);
    entry.outcome = outcome;
    entry.round = m_round;
    entry.waiting = true;
}

bool RunSheet::flush()
{
    if (m_unwritten.isEmpty() && !m_hasOldMarks)
        return false;
    // A signal for each of thousands of cells would have the view look for each of them.
    const QSignalBlocker blocker(&m_tree);
    if (m_hasOldMarks) {
        for (auto entry = m_marks.begin(); entry != m_marks.end();) {
            if (entry->round == m_round) {
                ++entry;
                continue;
            }
            write(entry.key(), Outcome::Started);
            entry = m_marks.erase(entry);
        }
        m_hasOldMarks = false;
    }
    for (QStandardItem* row : qAsConst(m_unwritten)) {
        Mark& entry = m_marks[row];
        write(row, entry.outcome);
        entry.waiting = false;
    }
    m_unwritten.clear();
    return true;
}
