#include "logic/RunView.h"

#include "logic/RowHeightDelegate.h"
#include "logic/logic_roles.h"
#include "logic/view_models.h"
#include "model/services/log.h"
#include "model/services/processedit.h"

#include <QHeaderView>
#include <QProgressBar>
#include <QSignalBlocker>
#include <QTimer>
#include <QTreeView>

#include <algorithm>
#include <iterator>

using run_states::Outcome;

namespace {
constexpr int DrawInterval = 30; // ms
constexpr int ColumnWidth = 180;
constexpr int ProgressMaximum = 100;
} // namespace

RunView::RunView(QTreeView* tree, QTableView* table)
    : m_tree(tree), m_column(std::make_unique<BreakPointColumn>(table, tree)),
      m_queue([this](double progress, int result) { emit sigProcessPrograss(progress, result); }),
      m_runTimer(new QTimer(this))
{
    m_runTimer->setInterval(DrawInterval);
    connect(m_runTimer, &QTimer::timeout, this, &RunView::landReports);
}

RunView::~RunView()
{
    finishLogProgress();
}

void RunView::start(const QString& appName, const QString& sequenceId, const QString& progressText)
{
    if (m_isRunning)
        finishLogProgress();
    if (!m_isExpected)
        m_queue.open();
    m_isExpected = false;
    m_isRunning = true;
    m_isStopped = false;
    m_progressHandle = sdk_ui_interface::log::create_progress(
        sdk_ui_interface::processedit::getCAppletShowName(appName), ProgressMaximum, progressText);
    m_runAppName = appName;
    m_runStartSequenceId = sequenceId;
    m_cursor = RunCursor();
    m_lastLanded = nullptr;

    Sheets earlier;
    earlier.swap(m_runSheets);
    m_sheetByIds.clear();
    RunPlan plan = run_plan::planRun(appName, sequenceId);
    m_queue.setBlocks(plan.blockUuids);
    m_current = addSheet(plan.targets.front());
    // The others get their rows when the run comes to them, as they are now.
    m_unreached.assign(std::make_move_iterator(plan.targets.begin() + 1),
                       std::make_move_iterator(plan.targets.end()));

    putOnScreen(m_current);
    setColumnWidths({ColumnWidth, ColumnWidth, ColumnWidth, ColumnWidth});
    fitFirstColumn();
    m_runTimer->start();
}

void RunView::expect()
{
    m_isExpected = true;
    m_queue.open();
}

void RunView::stop()
{
    if (!m_isRunning)
        return;
    landReports();
    if (m_cursor.lastResult == 0)
        emit sigProcessPrograss(ProgressMaximum, 0);
    m_runTimer->stop();
    for (const auto& sheet : m_runSheets)
        sheet->closeRunning(run_states::closingOutcome(m_cursor.lastResult, m_isStopped));
    flush();

    // The rows on screen stay, so that the outcome can be read.
    Sheets kept;
    for (auto& sheet : m_runSheets) {
        if (sheet.get() == m_onScreen)
            kept.push_back(std::move(sheet));
    }
    m_runSheets = std::move(kept);
    m_unreached.clear();
    m_sheetByIds.clear();
    m_queue.close();
    finishLogProgress();
    m_runAppName.clear();
    m_runStartSequenceId.clear();
    m_current = nullptr;
    m_lastLanded = nullptr;
    m_cursor = RunCursor();
    m_isRunning = false;
}

void RunView::finishLogProgress()
{
    if (m_progressHandle >= 0)
        sdk_ui_interface::log::finish_progress(m_progressHandle);
    m_progressHandle = -1;
}

void RunView::notifyRunState(const QString& seqUuid, const QString& blockuuid, int result,
                             double iProgress)
{
    m_queue.report(seqUuid, blockuuid, result, iProgress);
}

void RunView::notifyGoto(const QString& gotoSeqUuid, bool isEnd, const QString& templateId)
{
    m_queue.attachGoto(gotoSeqUuid, isEnd, templateId);
}

void RunView::landReports()
{
    if (!m_isRunning)
        return;
    const std::vector<runProcessState> reports = m_queue.take();
    if (reports.empty())
        return;
    for (const runProcessState& report : reports) {
        if (!report.blockuuid.isEmpty()) {
            if (RunSheet* sheet = sheetOf(report.templateId, report.seqUuid)) {
                m_current = sheet;
                m_lastLanded = sheet;
                sheet->land(report, m_cursor);
            }
        }
        if (report.hasGoto)
            followGoto(report);
    }
    flush();
}

void RunView::followGoto(const runProcessState& report)
{
    // The end of a call says where it was, not where it came from: the caller's next report does.
    if (report.isEnd || report.gotoSeqUuid.isEmpty())
        return;
    const QString templateId = report.hasGotoTemplate ? report.gotoTemplateId : report.templateId;
    if (RunSheet* sheet = sheetOf(templateId, report.gotoSeqUuid)) {
        sheet->reset();
        m_current = sheet;
    }
}

void RunView::finishRow(bool success)
{
    landReports();
    if (!m_lastLanded || (success && m_cursor.lastResult < 0))
        return;
    if (m_isStopped && m_lastLanded->runningRow())
        return; // the end of the run closes it
    m_lastLanded->finish(m_cursor.lastRowUuid, success ? Outcome::Succeeded : Outcome::Failed);
    if (!success) {
        for (const auto& sheet : m_runSheets)
            sheet->closeRunning(Outcome::Failed);
    }
    flush();
}

RunSheet* RunView::sheetOf(const QString& templateId, const QString& sequenceId)
{
    if (m_lastLanded && m_lastLanded->sequenceId() == sequenceId &&
        m_lastLanded->templateId() == templateId)
        return m_lastLanded;
    if (RunSheet* sheet = m_sheetByIds.value({templateId, sequenceId}))
        return sheet;
    if (RunSheet* sheet = reach(templateId, sequenceId))
        return sheet;
    // A sequence of the applet that is called while a template is in force, or the other way round.
    for (const auto& sheet : m_runSheets) {
        if (sheet->sequenceId() == sequenceId) {
            m_sheetByIds.insert({templateId, sequenceId}, sheet.get());
            return sheet.get();
        }
    }
    const auto other = std::find_if(
        m_unreached.begin(), m_unreached.end(),
        [&sequenceId](const RunTarget& target) { return target.sequenceId == sequenceId; });
    if (other != m_unreached.end()) {
        RunSheet* sheet = reach(other->templateId, sequenceId);
        m_sheetByIds.insert({templateId, sequenceId}, sheet);
        return sheet;
    }
    // Reached without a call, by the jump behind a step.
    RunTarget target;
    if (!run_plan::findTarget(m_runAppName, templateId, sequenceId, target))
        return nullptr;
    return addSheet(target);
}

RunSheet* RunView::reach(const QString& templateId, const QString& sequenceId)
{
    const auto found =
        std::find_if(m_unreached.begin(), m_unreached.end(), [&](const RunTarget& target) {
            return target.sequenceId == sequenceId && target.templateId == templateId;
        });
    if (found == m_unreached.end())
        return nullptr;
    RunSheet* sheet = addSheet(*found);
    m_unreached.erase(found);
    return sheet;
}

RunSheet* RunView::addSheet(const RunTarget& target)
{
    m_runSheets.push_back(std::make_unique<RunSheet>(target));
    RunSheet* sheet = m_runSheets.back().get();
    m_sheetByIds.insert({target.templateId, target.sequenceId}, sheet);
    return sheet;
}

void RunView::flush()
{
    bool changed = false;
    for (const auto& sheet : m_runSheets)
        changed = sheet->takeChanged() || changed;
    if (m_current && m_current != m_onScreen)
        putOnScreen(m_current);
    else if (changed)
        m_tree->viewport()->update();
    showProgress();
}

void RunView::putOnScreen(RunSheet* sheet)
{
    m_onScreen = sheet;
    m_barIndex = QPersistentModelIndex();
    m_bar = nullptr; // the view drops it with the model
    m_shownStart = nullptr;
    {
        const QSignalBlocker blocker(m_tree->header());
        QList<int> widths;
        for (int column = 0; column < m_tree->header()->count(); ++column)
            widths.append(m_tree->columnWidth(column));
        view_models::setModel(m_tree, sheet->treeModel());
        setColumnWidths(widths);
    }
    m_tree->expandAll();
    m_column->show(sheet->tableModel(), sheet->rowCount());
    emit sheetShown();
}

void RunView::showProgress()
{
    if (!m_onScreen)
        return;
    QStandardItem* running = m_onScreen->runningRow();
    const QModelIndex index =
        running ? running->index().siblingAtColumn(logic_columns::State) : QModelIndex();
    if (m_bar && m_barIndex != index) {
        m_tree->setIndexWidget(m_barIndex, nullptr);
        m_bar = nullptr;
    }
    QStandardItem* started = m_onScreen->startedRow();
    if (started && started != m_shownStart)
        m_tree->setCurrentIndex(started->index());
    m_shownStart = started;
    if (!running)
        return;
    if (!m_bar) {
        m_bar = new QProgressBar;
        m_bar->setAlignment(Qt::AlignCenter);
        m_bar->setMaximumHeight(RowHeightDelegate::rowHeight());
        m_bar->setRange(0, ProgressMaximum);
        // The text of an earlier pass through the row must not show through.
        m_bar->setAutoFillBackground(true);
        m_barIndex = index;
        m_tree->setIndexWidget(index, m_bar);
    }
    m_bar->setValue(m_onScreen->runningValue());
}

void RunView::setColumnWidths(const QList<int>& widths)
{
    const QSignalBlocker blocker(m_tree->header());
    for (int column = 0; column < widths.size(); ++column)
        m_tree->setColumnWidth(column, widths[column]);
}

void RunView::fitFirstColumn()
{
    const QSignalBlocker blocker(m_tree->header());
    m_tree->resizeColumnToContents(logic_columns::Name);
    const int digit = m_tree->fontMetrics().horizontalAdvance(QLatin1Char('0'));
    m_tree->setColumnWidth(logic_columns::Name, m_tree->columnWidth(logic_columns::Name) + digit);
}

#include "moc_RunView.cpp"
