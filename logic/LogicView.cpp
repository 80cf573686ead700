#include "logic/LogicView.h"

#include "logic/BreakPointColumn.h"
#include "logic/CheckStateEditor.h"
#include "logic/CustonStandModel.h"
#include "logic/RowHeightDelegate.h"
#include "logic/RowIndex.h"
#include "logic/RunView.h"
#include "logic/flow_loader.h"
#include "logic/logic_roles.h"
#include "logic/row_texts.h"
#include "logic/tree_look.h"
#include "logic/view_models.h"
#include "model/SequenceInfo.h"
#include "model/services/processedit.h"
#include "ui_LogicView.h"

#include <QEvent>
#include <QHeaderView>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSignalBlocker>

#include <algorithm>

using namespace sdk_ui_interface;

namespace {

constexpr int EditTab = 0;
constexpr int RunTab = 1;
constexpr int DefaultColumnWidth = 200;

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

LogicView::LogicView(QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::LogicView>()),
      m_checkStates(std::make_unique<CheckStateEditor>())
{
    m_ui->setupUi(this);
    setUpEditTab();
    setUpRunTab();
    m_ui->tabWidget->setTabEnabled(RunTab, false);
    m_ui->tabWidget->setCurrentIndex(EditTab);
    connect(m_ui->tabWidget, &QTabWidget::currentChanged, this, &LogicView::onCurrentTabChange);
}

LogicView::~LogicView() = default;

void LogicView::setUpEditTab()
{
    tree_look::apply(m_ui->treeView);
    m_breakPoints = std::make_unique<BreakPointColumn>(m_ui->tableView, m_ui->treeView);
    connect(m_ui->treeView, &QTreeView::clicked, this, &LogicView::onItemClicked);
    connect(m_ui->treeView, &QTreeView::doubleClicked, this, &LogicView::onItemDoubleClicked);
    m_ui->treeView->horizontalScrollBar()->installEventFilter(this);
    QHeaderView* header = m_ui->treeView->header();
    connect(header, &QHeaderView::sectionResized, this, [this, header](int column, int, int size) {
        // The stretched last column follows the window, not the user.
        if (column == logic_columns::Setting)
            return;
        (column == logic_columns::Name ? m_columnWidth0 : m_columnWidth1) = size;
        m_columnWidth2 = header->sectionSize(logic_columns::Setting);
        emit sigUpdateProcessWidgetWidth(widthTexts(header), false);
    });
}

void LogicView::setUpRunTab()
{
    tree_look::apply(m_ui->runTreeView);
    m_ui->runTreeView->setItemDelegate(new RowHeightDelegate(m_ui->runTreeView));
    m_run = std::make_unique<RunView>(m_ui->runTreeView, m_ui->runTableView);
    connect(m_run.get(), &RunView::sigProcessPrograss, this, &LogicView::sigProcessPrograss,
            Qt::DirectConnection);
    connect(m_ui->runTreeView, &QTreeView::doubleClicked, this, &LogicView::onRunDoubleItemClicked);
    QHeaderView* header = m_ui->runTreeView->header();
    connect(header, &QHeaderView::sectionResized, this, [this, header](int column) {
        if (column != logic_columns::State)
            emit sigUpdateProcessWidgetWidth(widthTexts(header), true);
    });
}

bool LogicView::eventFilter(QObject* watched, QEvent* event)
{
    // The edit tree ends in plain white; its horizontal bar still takes the wheel and the mouse.
    QScrollBar* bar = m_ui->treeView->horizontalScrollBar();
    if (watched == bar && event->type() == QEvent::Paint) {
        QPainter(bar).fillRect(bar->rect(), Qt::white);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void LogicView::setCAppletName(const QString& appName)
{
    m_appName = appName;
    m_checkStates->setAppName(appName);
}

void LogicView::showSequence(const QString& sequenceId)
{
    CustonStandModel* model = m_editModels.value(sequenceId);
    if (!model)
        return;
    m_currentSequenceId = sequenceId;
    {
        const QSignalBlocker blocker(m_ui->treeView->header());
        if (m_ui->treeView->model() != model)
            view_models::setModel(m_ui->treeView, model);
        const int widths[] = {m_columnWidth0, m_columnWidth1, m_columnWidth2};
        for (int column = 0; column < logic_columns::EditCount; ++column)
            m_ui->treeView->setColumnWidth(column, widths[column] > 0 ? widths[column]
                                                                      : DefaultColumnWidth);
    }
    m_ui->treeView->expandAll();
    rebuildTable();
}

void LogicView::rebuildTable()
{
    if (CustonStandModel* model = currentModel())
        m_breakPoints->show(m_editTableModels.value(m_currentSequenceId),
                            model->rows().items().size());
}

void LogicView::clearCurrentSequenceRows()
{
    CustonStandModel* model = currentModel();
    if (!model)
        return;
    const QScopedValueRollback<bool> loading(m_loadingSequence, true);
    for (int flow = InitialFlow; flow <= EndFlow; ++flow) {
        QStandardItem* item = model->rowOf(QString::number(flow));
        item->removeRows(0, item->rowCount());
        item->setCheckState(Qt::Checked);
    }
    rebuildTable();
    onItemClicked(QModelIndex());
}

void LogicView::showEditTab()
{
    m_ui->tabWidget->setCurrentIndex(EditTab);
}

bool LogicView::isRunTabShown() const
{
    return m_ui->tabWidget->currentIndex() == RunTab;
}

QStandardItemModel* LogicView::editModel(const QString& sequenceId) const
{
    return m_editModels.value(sequenceId);
}

CustonStandModel* LogicView::currentModel() const
{
    return m_editModels.value(m_currentSequenceId);
}

void LogicView::setEditColumnWidths(const QList<int>& widths)
{
    if (!areWidths(widths, logic_columns::EditCount))
        return;
    m_columnWidth0 = widths[0];
    m_columnWidth1 = widths[1];
    m_columnWidth2 = widths[2];
    const QSignalBlocker blocker(m_ui->treeView->header());
    for (int column = 0; column < logic_columns::EditCount; ++column)
        m_ui->treeView->setColumnWidth(column, widths[column]);
}

void LogicView::setRunColumnWidths(const QList<int>& widths)
{
    if (areWidths(widths, logic_columns::RunCount))
        m_run->setColumnWidths(widths.mid(0, logic_columns::RunCount));
}

void LogicView::addNewModelSlot(QString sequenceId)
{
    const SequenceInfo sequence = processedit::getSequence(m_appName, sequenceId);
    if (sequence.id.empty())
        return;
    const QScopedValueRollback<bool> loading(m_loadingSequence, true);
    const bool shown = sequenceId == m_currentSequenceId;
    removeModel(sequenceId);
    auto* model = new CustonStandModel(sequenceId, this);
    flow_loader::fill(model, flow_loader::sequenceFlows(m_appName, sequence),
                      step_rows::Purpose::Edit);
    m_editModels.insert(sequenceId, model);
    m_editTableModels.insert(sequenceId, new QStandardItemModel(this));
    if (!m_staleUuids.isEmpty())
        tree_look::markStaleRows(*model, m_staleUuids);
    connect(model, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex& topLeft, const QModelIndex& bottomRight,
                   const QVector<int>& roles) {
                if (roles.isEmpty() || roles.contains(Qt::CheckStateRole))
                    onDataChanged(topLeft, bottomRight);
            });
    if (shown)
        showSequence(sequenceId);
}

bool LogicView::removeModel(const QString& sequenceId)
{
    CustonStandModel* model = m_editModels.take(sequenceId);
    delete model;
    delete m_editTableModels.take(sequenceId);
    return model != nullptr;
}

void LogicView::removeModelSlot(QStringList sequenceIdList)
{
    bool currentRemoved = false;
    for (const QString& sequenceId : qAsConst(sequenceIdList)) {
        if (removeModel(sequenceId) && sequenceId == m_currentSequenceId)
            currentRemoved = true;
    }
    if (!currentRemoved)
        return;
    m_currentSequenceId.clear();
    onItemClicked(QModelIndex());
}

void LogicView::removeAllModelSlot()
{
    const QStringList sequenceIds = m_editModels.keys();
    for (const QString& sequenceId : sequenceIds)
        removeModel(sequenceId);
    m_currentSequenceId.clear();
    onItemClicked(QModelIndex());
}

void LogicView::onItemClicked(QModelIndex index)
{
    if (!index.isValid()) {
        emit processItemClicked(NoBlock, QString());
        return;
    }
    if (tree_look::mixesFlowsAndSteps(m_ui->treeView->selectionModel())) {
        m_ui->treeView->clearSelection();
        m_ui->treeView->setCurrentIndex(index);
    }
    const QModelIndex name = index.siblingAtColumn(logic_columns::Name);
    emit processItemClicked(name.data(logic_roles::BaseType).toInt(),
                            name.data(logic_roles::BlockUuid).toString());
}

void LogicView::onItemDoubleClicked(QModelIndex index)
{
    if (index.isValid())
        emit sigItemDbClick();
}

void LogicView::onRunDoubleItemClicked(QModelIndex index)
{
    const QString uuid =
        index.siblingAtColumn(logic_columns::Name).data(logic_roles::BlockUuid).toString();
    showEditTab();
    m_ui->treeView->clearSelection();
    const CustonStandModel* model = currentModel();
    const QStandardItem* row = model ? model->rowOf(uuid) : nullptr;
    if (!row)
        return;
    m_ui->treeView->setCurrentIndex(row->index());
    onItemClicked(row->index());
}

void LogicView::onCurrentTabChange(int index)
{
    emit sigCurrentTabChanged(index);
}

void LogicView::onDataChanged(QModelIndex topLeft, QModelIndex bottomRight)
{
    Q_UNUSED(bottomRight)
    const auto* model = qobject_cast<const CustonStandModel*>(topLeft.model());
    QStandardItem* item =
        model ? model->itemFromIndex(topLeft.siblingAtColumn(logic_columns::Name)) : nullptr;
    // Rows that are being loaded bring their states with them.
    if (!item || !item->isCheckable() || m_loadingSequence || !m_checkStates->takeBox(item))
        return;
    row_texts::refreshJumps(*model, m_appName, m_staleUuids);
    m_ui->treeView->viewport()->update();
    emit sigModified();
}

void LogicView::syncCheckStatesToSdk()
{
    CustonStandModel* model = currentModel();
    if (!model || m_appName.isEmpty())
        return;
    bool changed = false;
    syncCheckStateItemRecursive(model->invisibleRootItem(), changed);
    if (changed)
        emit sigModified();
}

void LogicView::syncCheckStateItemRecursive(QStandardItem* item, bool& changed)
{
    for (int row = 0; row < item->rowCount(); ++row) {
        QStandardItem* child = item->child(row);
        if (child->isCheckable() && m_checkStates->writeBlock(child))
            changed = true;
        syncCheckStateItemRecursive(child, changed);
    }
}

void LogicView::refreshRow(const QString& blockUuid)
{
    if (const CustonStandModel* model = currentModel())
        row_texts::refresh(*model, m_appName, blockUuid, m_staleUuids);
}

void LogicView::refreshSequenceNames()
{
    for (const CustonStandModel* model : qAsConst(m_editModels))
        row_texts::refreshCalls(*model, m_appName, m_staleUuids);
}

void LogicView::setRuntimeStaleBlockUuids(const QSet<QString>& blockUuids)
{
    m_staleUuids = blockUuids;
    for (CustonStandModel* model : qAsConst(m_editModels))
        tree_look::markStaleRows(*model, m_staleUuids);
    m_ui->treeView->viewport()->update();
}

void LogicView::setRunMode(bool start, const QString& appName, const QString& sequenceId,
                           const QString& progressText)
{
    if (!start) {
        m_run->stop();
        return;
    }
    m_ui->tabWidget->setTabEnabled(RunTab, true);
    m_ui->tabWidget->setCurrentIndex(RunTab);
    m_run->start(appName, sequenceId, progressText);
}

void LogicView::notifyRunState(const QString& seqUuid, const QString& blockuuid, int result,
                               double iProgress)
{
    m_run->notifyRunState(seqUuid, blockuuid, result, iProgress);
}

void LogicView::notifyGoto(const QString& gotoSeqUuid, bool isEnd, const QString& templateId)
{
    m_run->notifyGoto(gotoSeqUuid, isEnd, templateId);
}

void LogicView::finishRow(bool success)
{
    m_run->finishRow(success);
}

int LogicView::progressHandle() const
{
    return m_run->progressHandle();
}

void LogicView::onRunTimerTimeout()
{
    m_run->landReports();
}
