#include "logic/LogicView.h"

#include "edits/DocumentEdits.h"
#include "logic/LogicViewParts.h"
#include "logic/look/RowHeightDelegate.h"
#include "logic/look/tree_look.h"
#include "logic/rows/CustonStandModel.h"
#include "logic/rows/RowIndex.h"
#include "logic/rows/logic_roles.h"
#include "model/colour_rules.h"
#include "model/dialogs/EmptyHint.h"
#include "model/dialogs/view_models.h"
#include "model/services/widget_bases.h"

#include <QEvent>
#include <QHeaderView>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>

namespace {

constexpr int EditTab = 0;
constexpr int RunTab = 1;
constexpr int DefaultColumnWidth = 200;
constexpr int LeastColumnWidth = 120;

QString noSequence()
{
    return LogicView::tr("没有序列，请先在“序列”中添加");
}

bool areWidths(const QList<int>& widths, int count)
{
    if (widths.size() < count)
        return false;
    return std::all_of(widths.begin(), widths.begin() + count, [](int width) { return width > 0; });
}

QStringList widthTexts(const QHeaderView* header)
{
    QStringList texts;
    for (int column = 0; column < header->count(); ++column)
        texts.append(QString::number(header->sectionSize(column)));
    return texts;
}

} // namespace

LogicView::LogicView(QWidget* parent) : QWidget(parent), m(std::make_unique<LogicViewParts>())
{
    m->ui.setupUi(this);
    m->sheets = new EditSheets(this);
    setUpEditTab();
    setUpSteps();
    setUpRunTab();
    connect(&DocumentEdits::instance(), &DocumentEdits::changed, this,
            &LogicView::onDocumentChanged);
    m->ui.tabWidget->setTabEnabled(RunTab, false);
    m->ui.tabWidget->setCurrentIndex(EditTab);
    connect(m->ui.tabWidget, &QTabWidget::currentChanged, this, &LogicView::onCurrentTabChange);
}

LogicView::~LogicView()
{
    // Their columns go with the models, which outlive what hears of it.
    m->ui.treeView->header()->disconnect(this);
    m->ui.runTreeView->header()->disconnect(this);
}

void LogicView::setUpEditTab()
{
    tree_look::apply(m->ui.treeView);
    new EmptyHint(m->ui.treeView, noSequence());
    m->breakPoints = std::make_unique<BreakPointColumn>(m->ui.tableView, m->ui.treeView);
    m->chosenRow = std::make_unique<ChosenRow>(m->ui.treeView);
    connect(m->chosenRow.get(), &ChosenRow::chosen, this, &LogicView::processItemClicked);
    connect(m->ui.treeView, &QTreeView::doubleClicked, this, &LogicView::onItemDoubleClicked);
    m->ui.treeView->horizontalScrollBar()->installEventFilter(this);
    QHeaderView* header = m->ui.treeView->header();
    // What the others leave of a narrow tree isn't enough for the stretched column: it scrolls
    // then.
    header->setMinimumSectionSize(StyleManager::scale(LeastColumnWidth));
    connect(header, &QHeaderView::sectionResized, this, [this, header](int column, int, int size) {
        // The stretched last column follows the window, not the user.
        if (m_isSettingWidths || column == logic_columns::Setting)
            return;
        (column == logic_columns::Name ? m_columnWidth0 : m_columnWidth1) = size;
        m_columnWidth2 = header->sectionSize(logic_columns::Setting);
        emit sigUpdateProcessWidgetWidth(widthTexts(header), false);
    });
}

void LogicView::setUpSteps()
{
    m->udsSteps = std::make_unique<UdsStepEditor>(*m->ui.treeView);
    m->steps = std::make_unique<StepEditor>(*m->ui.treeView, m->checkStates, *m->udsSteps);
    const StepEditor* steps = m->steps.get();
    connect(m->ui.treeView, &MyCustomTreeView::sigRemoveItem, this, &LogicView::removeRowSlot);
    connect(steps, &StepEditor::rowCountChanged, m->breakPoints.get(),
            &BreakPointColumn::setRowCount);
    connect(steps, &StepEditor::rowsRemoved, this,
            [this] { m->sheets->refreshJumps(m_currentSequenceId); });
    connect(steps, &StepEditor::rowsRemoved, this, &LogicView::sigStepsRemoved);
    connect(steps, &StepEditor::removed, this, &LogicView::sigNotice);
    connect(steps, &StepEditor::rowChosen, this, &LogicView::onItemClicked);
    connect(steps, &StepEditor::refused, this, &LogicView::showRefusal);
    // The model that is told of the move would not outlive a new load.
    connect(steps, &StepEditor::moveRefused, this, &LogicView::addNewModelSlot,
            Qt::QueuedConnection);
    const UdsStepEditor* udsSteps = m->udsSteps.get();
    connect(udsSteps, &UdsStepEditor::added, this, &LogicView::sigUdsBlockAdded);
    connect(udsSteps, &UdsStepEditor::removed, this, &LogicView::sigUdsBlockRemoved);
    connect(udsSteps, &UdsStepEditor::runtimeStale, this, &LogicView::sigUdsRuntimeStaleRequired);
    connect(udsSteps, &UdsStepEditor::rowChosen, this, &LogicView::onItemClicked);
    connect(udsSteps, &UdsStepEditor::refused, this, &LogicView::showRefusal);
    connect(steps, &StepEditor::quickStepsAdded, this, &LogicView::sigQuickStepsAdded);
}

void LogicView::setUpRunTab()
{
    tree_look::apply(m->ui.runTreeView);
    m->ui.runTreeView->setItemDelegate(new RowHeightDelegate(m->ui.runTreeView));
    m->run = std::make_unique<RunView>(m->ui.runTreeView, m->ui.runTableView);
    connect(m->run.get(), &RunView::sigProcessPrograss, this, &LogicView::sigProcessPrograss);
    connect(m->run.get(), &RunView::sigLogLine, this, &LogicView::sigLogLine);
    connect(m->run.get(), &RunView::sheetShown, this, [this] {
        nameRunSequence();
        emit sigRunSequenceChanged();
    });
    m->runSequence = new QLabel;
    m->runSequence->setObjectName(QStringLiteral("runSequenceLabel"));
    m->runSequence->setTextFormat(Qt::PlainText);
    m->ui.tabWidget->setCornerWidget(m->runSequence);
    m->runSequence->hide();
    connect(m->ui.runTreeView, &QTreeView::doubleClicked, this, &LogicView::onRunDoubleItemClicked);
    QHeaderView* header = m->ui.runTreeView->header();
    connect(header, &QHeaderView::sectionResized, this, [this, header](int column) {
        if (column != logic_columns::State)
            emit sigUpdateProcessWidgetWidth(widthTexts(header), true);
    });
}

bool LogicView::eventFilter(QObject* watched, QEvent* event)
{
    // The edit tree ends in plain ground; its horizontal bar still takes the wheel and the mouse.
    QScrollBar* bar = m->ui.treeView->horizontalScrollBar();
    if (watched == bar && event->type() == QEvent::Paint) {
        QPainter(bar).fillRect(bar->rect(), colour_rules::blank(bar->palette()));
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void LogicView::setCAppletName(const QString& appName)
{
    m_appName = appName;
    m->checkStates.setAppName(appName);
    m->sheets->setAppName(appName);
    m->steps->setAppName(appName);
    m->udsSteps->setAppName(appName);
}

void LogicView::showSequence(const QString& sequenceId)
{
    CustonStandModel* model = m->sheets->model(sequenceId);
    if (!model)
        return;
    m_currentSequenceId = sequenceId;
    {
        // No blocked signals: the tree hears from its header how far it scrolls.
        const QScopedValueRollback<bool> setting(m_isSettingWidths, true);
        if (m->ui.treeView->model() != model) {
            view_models::setModel(m->ui.treeView, model);
            m->chosenRow->follow();
        }
        const int widths[] = {m_columnWidth0, m_columnWidth1, m_columnWidth2};
        for (int column = 0; column < logic_columns::EditCount; ++column)
            m->ui.treeView->setColumnWidth(column, widths[column] > 0 ? widths[column]
                                                                      : DefaultColumnWidth);
    }
    m->ui.treeView->expandAll();
    m->breakPoints->show(m->sheets->table(sequenceId), model->rows().items().size());
    nameRunSequence();
}

void LogicView::clearCurrentSequenceRows()
{
    m->steps->clearRows();
}

void LogicView::showEditTab()
{
    m->ui.tabWidget->setCurrentIndex(EditTab);
}

bool LogicView::isRunTabShown() const
{
    return m->ui.tabWidget->currentIndex() == RunTab;
}

QStandardItemModel* LogicView::editModel(const QString& sequenceId) const
{
    return m->sheets->model(sequenceId);
}

CustonStandModel* LogicView::currentModel() const
{
    return m->sheets->model(m_currentSequenceId);
}

void LogicView::setEditColumnWidths(const QList<int>& widths)
{
    if (!areWidths(widths, logic_columns::EditCount))
        return;
    m_columnWidth0 = widths[0];
    m_columnWidth1 = widths[1];
    m_columnWidth2 = widths[2];
    const QScopedValueRollback<bool> setting(m_isSettingWidths, true);
    for (int column = 0; column < logic_columns::EditCount; ++column)
        m->ui.treeView->setColumnWidth(column, widths[column]);
}

void LogicView::setRunColumnWidths(const QList<int>& widths)
{
    if (areWidths(widths, logic_columns::RunCount))
        m->run->setColumnWidths(widths.mid(0, logic_columns::RunCount));
}

void LogicView::addNewModelSlot(QString sequenceId)
{
    CustonStandModel* model = m->sheets->load(sequenceId);
    if (!model)
        return;
    connect(model, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex& topLeft, const QModelIndex& bottomRight,
                   const QVector<int>& roles) {
                if (roles.isEmpty() || roles.contains(Qt::CheckStateRole))
                    onDataChanged(topLeft, bottomRight);
            });
    m->steps->follow(model);
    if (sequenceId == m_currentSequenceId)
        showSequence(sequenceId);
}

void LogicView::removeModelSlot(QStringList sequenceIdList)
{
    bool currentRemoved = false;
    for (const QString& sequenceId : qAsConst(sequenceIdList)) {
        if (m->sheets->remove(sequenceId) && sequenceId == m_currentSequenceId)
            currentRemoved = true;
    }
    if (!currentRemoved)
        return;
    m_currentSequenceId.clear();
    onItemClicked(QModelIndex());
}

void LogicView::removeAllModelSlot()
{
    const QStringList sequenceIds = m->sheets->sequenceIds();
    for (const QString& sequenceId : sequenceIds)
        m->sheets->remove(sequenceId);
    m_currentSequenceId.clear();
    onItemClicked(QModelIndex());
}

void LogicView::onItemClicked(QModelIndex index)
{
    m->chosenRow->choose(index);
}

void LogicView::onItemDoubleClicked(QModelIndex index)
{
    if (index.isValid() && !m->udsSteps->edit(index))
        emit sigItemDbClick();
}

void LogicView::onRunDoubleItemClicked(QModelIndex index)
{
    const QString uuid =
        index.siblingAtColumn(logic_columns::Name).data(logic_roles::BlockUuid).toString();
    showEditTab();
    m->ui.treeView->clearSelection();
    chooseStep(uuid);
}

QString LogicView::currentStepId() const
{
    const QModelIndex current = m->ui.treeView->currentIndex();
    return current.siblingAtColumn(logic_columns::Name).data(logic_roles::BlockUuid).toString();
}

void LogicView::chooseStep(const QString& uuid)
{
    const CustonStandModel* model = currentModel();
    const QStandardItem* row = model ? model->rowOf(uuid) : nullptr;
    if (!row)
        return;
    m->ui.treeView->setCurrentIndex(row->index());
    onItemClicked(row->index());
}

void LogicView::onCurrentTabChange(int index)
{
    nameRunSequence();
    emit sigCurrentTabChanged(index);
}

void LogicView::onDataChanged(QModelIndex topLeft, QModelIndex bottomRight)
{
    Q_UNUSED(bottomRight)
    const auto* model = qobject_cast<const CustonStandModel*>(topLeft.model());
    QStandardItem* item =
        model ? model->itemFromIndex(topLeft.siblingAtColumn(logic_columns::Name)) : nullptr;
    if (!item || !item->isCheckable() || !m->checkStates.takeBox(item))
        return;
    m->sheets->refreshJumps(model->sequenceId());
    tree_look::redraw(m->ui.treeView, m->checkStates.followers());
}

void LogicView::addStep(logicBlockType baseType, int stepType, const QString& stepName,
                        bool fromDrop, bool isInsert, const QString& quickStepId)
{
    StepEditor::Way way = StepEditor::Way::Chosen;
    if (fromDrop)
        way = isInsert ? StepEditor::Way::DroppedAbove : StepEditor::Way::DroppedOn;
    if (currentModel())
        m->steps->addStep({baseType, stepType, stepName, quickStepId, way});
    else
        emit sigNotice(noSequence());
}

void LogicView::focusSteps()
{
    m->ui.treeView->setFocus();
}

void LogicView::appendStatements(const QStringList& statements,
                                 const std::vector<int>& splitIndexes)
{
    m->steps->appendStatements(statements, splitIndexes);
}

void LogicView::setUdsEditor(UdsEditor editor)
{
    m->udsSteps->setDialog(std::move(editor));
}

// No box: a rule of the tree, which the user meets in passing.
void LogicView::showRefusal(const QString& reason)
{
    QWidget* viewport = m->ui.treeView->viewport();
    const QRect row = m->ui.treeView->visualRect(m->ui.treeView->currentIndex());
    const QPoint below = row.isValid() ? row.bottomLeft() : QPoint();
    QToolTip::showText(viewport->mapToGlobal(below), reason, viewport);
}

void LogicView::removeRowSlot()
{
    m->steps->removeStep();
}

void LogicView::removeAllRows()
{
    m->steps->removeAllSteps();
}

void LogicView::onQucikAddSlot()
{
    m->steps->addQuickSteps();
}

void LogicView::syncCheckStatesToSdk()
{
    CustonStandModel* model = currentModel();
    if (!model || m_appName.isEmpty())
        return;
    const DocumentEdits::Act act;
    bool changed = false;
    syncCheckStateItemRecursive(model->invisibleRootItem(), changed);
}

void LogicView::syncCheckStateItemRecursive(QStandardItem* item, bool& changed)
{
    for (int row = 0; row < item->rowCount(); ++row) {
        QStandardItem* child = item->child(row);
        if (child->isCheckable() && m->checkStates.writeBlock(child))
            changed = true;
        syncCheckStateItemRecursive(child, changed);
    }
}

void LogicView::refreshRow(const QString& blockUuid)
{
    m->sheets->refreshRow(m_currentSequenceId, blockUuid);
}

void LogicView::refreshRows(const QSet<QString>& blockUuids)
{
    m->sheets->refreshRows(blockUuids);
}

bool LogicView::isShown(const QString& blockUuid) const
{
    const CustonStandModel* model = currentModel();
    return model && model->rowOf(blockUuid);
}

void LogicView::onDocumentChanged(const DocumentChange& change)
{
    if (change.appName != m_appName)
        return;
    for (const DocumentChange::Item& item : change.items) {
        if (item.part == DocumentChange::Part::Step && item.kind == DocumentChange::Kind::Written)
            m->sheets->refreshRow(item.sequenceId, item.id);
    }
}

void LogicView::refreshSequenceNames()
{
    m->sheets->refreshCalls();
}

void LogicView::setRuntimeStaleBlockUuids(const QSet<QString>& blockUuids)
{
    m->sheets->setStale(blockUuids);
    m->ui.treeView->viewport()->update();
}

void LogicView::setRunMode(bool start, const QString& appName, const QString& sequenceId,
                           const QString& progressText)
{
    if (!start) {
        m->run->stop();
        emit sigRunSequenceChanged();
        return;
    }
    m->ui.tabWidget->setTabEnabled(RunTab, true);
    m->ui.tabWidget->setCurrentIndex(RunTab);
    m->run->start(appName, sequenceId, progressText);
}

void LogicView::expectRun()
{
    m->run->expect();
}

void LogicView::notifyRunState(const QString& seqUuid, const QString& blockuuid, int result,
                               double iProgress)
{
    m->run->notifyRunState(seqUuid, blockuuid, result, iProgress);
}

void LogicView::notifyGoto(const QString& gotoSeqUuid, bool isEnd, const QString& templateId)
{
    m->run->notifyGoto(gotoSeqUuid, isEnd, templateId);
}

std::shared_ptr<RunInbox> LogicView::inbox() const
{
    return m->run->inbox();
}

void LogicView::finishRow(bool success)
{
    m->run->finishRow(success);
}

void LogicView::noteStop()
{
    m->run->noteStop();
}

int LogicView::progressHandle() const
{
    return m->run->progressHandle();
}

QString LogicView::runSequenceId() const
{
    return m->run->isRunning() ? m->run->onScreen()->sequenceId() : QString();
}

std::shared_ptr<const processTemplateInfo> LogicView::runTemplate() const
{
    return m->run->isRunning() ? m->run->onScreen()->owner() : nullptr;
}

/// Beside the tabs, while the run tab shows another sequence than the edit tab.
void LogicView::nameRunSequence()
{
    constexpr int MostWidth = 320;
    const RunSheet* sheet = isRunTabShown() ? m->run->onScreen() : nullptr;
    const bool isOther = sheet && (sheet->owner() || sheet->sequenceId() != m_currentSequenceId);
    if (isOther) {
        const QString text = tr("序列: %1").arg(sheet->title().simplified());
        m->runSequence->setText(m->runSequence->fontMetrics().elidedText(
            text, Qt::ElideRight, StyleManager::scale(MostWidth)));
    }
    m->runSequence->setVisible(isOther);
}

void LogicView::onRunTimerTimeout()
{
    m->run->read();
}

#include "moc_LogicView.cpp"
