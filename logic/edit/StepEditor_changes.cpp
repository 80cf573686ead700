// Steps that leave the tree or change their place.

#include "edits/DocumentEdits.h"
#include "logic/edit/CheckStateEditor.h"
#include "logic/edit/StepEditor.h"
#include "logic/rows/CustonStandModel.h"
#include "logic/rows/RowIndex.h"
#include "logic/rows/logic_roles.h"
#include "logic/rows/step_rows.h"
#include "model/IProcessBlock.h"
#include "model/services/processedit.h"

#include <QSignalBlocker>
#include <QTreeView>
#include <QVector>

#include <algorithm>

using namespace sdk_ui_interface;
using step_rows::isFlow;
using step_rows::uuidOf;

namespace {

void clearFlow(QStandardItem* flow)
{
    flow->removeRows(0, flow->rowCount());
    const QSignalBlocker blocker(flow->model());
    flow->setCheckState(Qt::Checked);
}

/// Makes the place of each block the one of its row.
void writePlaces(const QString& appName, const QString& sequenceId,
                 const QVector<QStandardItem*>& rows)
{
    const auto move = [&](const QStandardItem* row, int index) {
        DocumentEdits::instance().updateProcessInfoIndex(appName, sequenceId, uuidOf(row),
                                                         uuidOf(row->parent()), index);
    };
    // Several blocks first go to the end. At their old places those that are still to be moved
    // would stand before the new place of another, and shift it.
    if (rows.size() > 1) {
        for (const QStandardItem* row : rows)
            move(row, -1);
    }
    for (const QStandardItem* row : rows)
        move(row, row->row());
}

/// Whether the block stands where its row does. The flows take every step, so only what is under a
/// block needs to be asked.
bool isAtItsPlace(const QString& appName, const QStandardItem* row)
{
    if (isFlow(row->parent()))
        return true;
    const auto parent = processedit::getProcess(appName, uuidOf(row->parent()));
    return parent && row->row() < int(parent->children.size()) &&
           parent->children[std::size_t(row->row())]->uuid == uuidOf(row).toStdString();
}

QString removedText(const QString& step, int others)
{
    return others > 0 ? StepEditor::tr("已删除 %1 及其 %2 个步骤").arg(step).arg(others)
                      : StepEditor::tr("已删除 %1").arg(step);
}

} // namespace

void StepEditor::removeStep()
{
    CustonStandModel* model = currentModel();
    const QModelIndex index = m_tree.currentIndex().siblingAtColumn(logic_columns::Name);
    const QStandardItem* step = model ? model->itemFromIndex(index) : nullptr;
    QStandardItem* parent = step ? step->parent() : nullptr;
    if (!parent)
        return;

    const DocumentEdits::Act act;
    const auto rows = structure_rules::rowsOfStep(step);
    const QString name = parent->child(rows.first)->text();
    const int itself = rows.first == rows.last ? 1 : 2; // a structure is closed by a row of its own
    const int before = model->rows().items().size();
    for (int row = rows.last; row >= rows.first; --row) {
        m_udsSteps.tellRemoved(parent->child(row));
        DocumentEdits::instance().removeProcess(m_appName, model->sequenceId(),
                                                uuidOf(parent->child(row)));
    }
    // Left to the views, the current row would change in the midst of the removal, and the tree be
    // laid out twice.
    const int next = rows.first > 0 ? rows.first - 1 : rows.last + 1;
    QStandardItem* current = parent->child(next);
    makeCurrent(current ? current->index() : QModelIndex());
    parent->removeRows(rows.first, rows.last - rows.first + 1);
    if (parent->rowCount() == 0 && isFlow(parent))
        clearFlow(parent);
    tellRowCount();
    emit rowsRemoved();
    emit removed(removedText(name, before - model->rows().items().size() - itself));

    emit rowChosen(m_tree.currentIndex());
    if (current)
        m_checkStates.updateUpward(current);
    m_tree.viewport()->update();
}

void StepEditor::removeAllSteps()
{
    CustonStandModel* model = currentModel();
    if (!model)
        return;
    const QModelIndex index = m_tree.currentIndex().siblingAtColumn(logic_columns::Name);
    const QStandardItem* current = model->itemFromIndex(index);
    if (current && !isFlow(current))
        return;

    const int only = current ? current->data(logic_roles::BaseType).toInt() : NoBlock;
    const auto isEmptied = [only](int flow) { return only == NoBlock || only == flow; };
    // One flow takes the diagnostic steps at the top of the others along: that their variables are
    // forgotten, too, is how hosts know it.
    for (int flow = InitialFlow; flow <= EndFlow; ++flow)
        m_udsSteps.tellRemoved(model->rowOf(QString::number(flow)),
                               isEmptied(flow) ? UdsStepEditor::AllLevels : 1);
    const int before = model->rows().items().size();
    DocumentEdits::instance().removeAllProcessBySequenceID(m_appName, model->sequenceId(),
                                                           logicBlockType(only));
    for (int flow = InitialFlow; flow <= EndFlow; ++flow) {
        if (isEmptied(flow))
            clearFlow(model->rowOf(QString::number(flow)));
    }
    tellRowCount();
    emit rowsRemoved();
    emit removed(tr("已删除 %1 的 %2 个步骤")
                     .arg(current ? current->text() : tr("全部流程"))
                     .arg(before - model->rows().items().size()));
    emit rowChosen(index);
    m_tree.viewport()->update();
}

void StepEditor::clearRows()
{
    const CustonStandModel* model = currentModel();
    if (!model)
        return;
    for (int flow = InitialFlow; flow <= EndFlow; ++flow)
        clearFlow(model->rowOf(QString::number(flow)));
    m_tree.viewport()->update();
    tellRowCount();
    emit rowChosen(QModelIndex());
}

void StepEditor::writeMovedRows(const QModelIndexList& rows)
{
    const CustonStandModel* model = currentModel();
    QVector<QStandardItem*> moved;
    for (const QModelIndex& index : rows) {
        QStandardItem* row =
            model ? model->itemFromIndex(index.siblingAtColumn(logic_columns::Name)) : nullptr;
        if (row && row->parent())
            moved.append(row);
    }
    if (moved.isEmpty())
        return;
    const DocumentEdits::Act act;
    writePlaces(m_appName, model->sequenceId(), moved);
    const bool written = std::all_of(moved.begin(), moved.end(), [this](const auto* row) {
        return isAtItsPlace(m_appName, row);
    });
    if (!written) {
        emit refused(tr("步骤不能移到此处"));
        emit moveRefused(model->sequenceId());
    }
    QVector<QStandardItem*> comeUnderDisabled;
    for (QStandardItem* row : qAsConst(moved)) {
        if (row->parent()->checkState() == Qt::Unchecked && row->checkState() != Qt::Unchecked)
            comeUnderDisabled.append(row);
        if (row->hasChildren())
            m_tree.expandRecursively(row->index());
        else
            m_tree.expand(row->index());
    }
    makeCurrent(moved.first()->index());
    m_tree.scrollTo(moved.first()->index());
    m_checkStates.switchOff(comeUnderDisabled);
    for (int flow = InitialFlow; flow <= EndFlow; ++flow)
        m_checkStates.followSteps(model->rowOf(QString::number(flow)));
    m_tree.viewport()->update();
}
