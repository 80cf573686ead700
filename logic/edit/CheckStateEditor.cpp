#include "logic/edit/CheckStateEditor.h"

#include "edits/DocumentEdits.h"
#include "logic/edit/check_states.h"
#include "logic/rows/CustonStandModel.h"
#include "logic/rows/RowItem.h"
#include "logic/rows/logic_roles.h"
#include "model/IProcessBlock.h"
#include "model/services/processedit.h"

#include <QSignalBlocker>

using namespace sdk_ui_interface;

namespace {

QString sequenceOf(const QStandardItem* row)
{
    return static_cast<const CustonStandModel*>(row->model())->sequenceId();
}

} // namespace

bool CheckStateEditor::takeBox(QStandardItem* row)
{
    const DocumentEdits::Act act;
    m_followers.clear();
    const QSignalBlocker blocker(row->model());
    if (row->data(logic_roles::BaseType).toInt() <= EndFlow)
        return takeFlowBox(row);
    if (!writeBlock(row))
        return false;
    check_states::propagate(*this, row);
    return true;
}

bool CheckStateEditor::setBox(QStandardItem* row, Qt::CheckState state)
{
    {
        const QSignalBlocker blocker(row->model());
        row->setCheckState(state);
    }
    return takeBox(row);
}

bool CheckStateEditor::takeFlowBox(QStandardItem* flowRow)
{
    const Qt::CheckState state = flowRow->checkState();
    if (state == Qt::PartiallyChecked)
        return false;
    const int flow = flowRow->data(logic_roles::BaseType).toInt();
    const auto blocks = processedit::getAllProcessBySequenceID(
        m_appName, sequenceOf(flowRow), IProcessBlock::ProcessBlockBelong(flow + 1));
    for (const auto& block : blocks)
        write(flowRow, block, state);
    check_states::propagateFlow(*this, flowRow);
    return true;
}

bool CheckStateEditor::writeBlock(const QStandardItem* row)
{
    const auto block = blockOf(row);
    return block && write(row, block, row->checkState());
}

void CheckStateEditor::spread(QStandardItem* row)
{
    m_followers.clear();
    const QSignalBlocker blocker(row->model());
    check_states::propagate(*this, row);
}

void CheckStateEditor::updateUpward(const QStandardItem* row)
{
    m_followers.clear();
    const QSignalBlocker blocker(row->model());
    check_states::updateUpward(*this, row);
}

void CheckStateEditor::followSteps(QStandardItem* flowRow)
{
    // An empty one may be switched off.
    if (!flowRow->hasChildren() && flowRow->checkState() == Qt::Unchecked)
        return;
    const QSignalBlocker blocker(flowRow->model());
    check_states::followChildren(*this, flowRow);
}

void CheckStateEditor::switchOff(const QVector<QStandardItem*>& rows)
{
    // All at first: a row that is still on would bring its new parent back.
    for (QStandardItem* row : rows) {
        const QSignalBlocker blocker(row->model());
        setState(row, Qt::Unchecked);
    }
    for (QStandardItem* row : rows)
        spread(row);
}

bool CheckStateEditor::write(const QStandardItem* row, const std::shared_ptr<IProcessBlock>& block,
                             Qt::CheckState state)
{
    if (block->enableState == state)
        return false;
    DocumentEdits::instance().setEnableState(m_appName, sequenceOf(row), block, state);
    return true;
}

std::shared_ptr<IProcessBlock> CheckStateEditor::blockOf(const QStandardItem* row) const
{
    return processedit::getProcess(m_appName, row->data(logic_roles::BlockUuid).toString());
}

Qt::CheckState CheckStateEditor::state(const QStandardItem* row) const
{
    const auto block = blockOf(row);
    return block ? Qt::CheckState(block->enableState) : row->checkState();
}

int CheckStateEditor::disabledChildren(const QStandardItem* row) const
{
    return RowItem::from(row)->uncheckedChildren();
}

void CheckStateEditor::setState(QStandardItem* row, Qt::CheckState state)
{
    if (const auto block = blockOf(row))
        write(row, block, state);
    if (row->checkState() == state)
        return;
    row->setCheckState(state);
    m_followers.append(row);
}
