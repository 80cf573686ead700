#include "logic/rows/CustonStandModel.h"

#include "logic/rows/RowIndex.h"
#include "logic/rows/logic_roles.h"
#include "logic/rows/step_rows.h"
#include "model/IProcessBlock.h"
#include "model/services/processedit.h"

CustonStandModel::CustonStandModel(const QString& appName, const QString& sequenceId,
                                   QObject* parent)
    : QStandardItemModel(parent), m_appName(appName), m_sequenceId(sequenceId),
      m_rows(new RowIndex(this))
{
}

QStandardItem* CustonStandModel::rowOf(const QString& blockUuid) const
{
    return m_rows->find(blockUuid);
}

/// The first cell of a step's row, if @p index is another one; null for all other indexes.
const QStandardItem* CustonStandModel::nameItem(const QModelIndex& index) const
{
    if (index.column() <= logic_columns::Name)
        return nullptr;
    const QStandardItem* name = itemFromIndex(index.siblingAtColumn(logic_columns::Name));
    return name && !step_rows::isFlow(name) ? name : nullptr;
}

QVariant CustonStandModel::data(const QModelIndex& index, int role) const
{
    const QStandardItem* name = nameItem(index);
    if (!name)
        return QStandardItemModel::data(index, role);
    switch (role) {
    case logic_roles::BaseType:
    case logic_roles::StepType:
    case logic_roles::BlockUuid:
        return name->data(role);
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        break;
    default:
        return QVariant();
    }
    const QString uuid = step_rows::uuidOf(name);
    const auto block = sdk_ui_interface::processedit::getProcess(m_appName, uuid);
    if (!block)
        return QVariant();
    if (role == Qt::DisplayRole)
        return step_rows::cellText(*block, index.column(), m_staleBlocks.contains(uuid));
    return index.column() == logic_columns::Description
               ? QVariant(QString::fromStdString(block->description()))
               : QVariant();
}

Qt::ItemFlags CustonStandModel::flags(const QModelIndex& index) const
{
    const QStandardItem* name = nameItem(index);
    return name ? name->flags() : QStandardItemModel::flags(index);
}

void CustonStandModel::tellTextsChanged(const QStandardItem* row)
{
    // One by one: a view that hears of several cells at once draws itself anew as a whole.
    const QModelIndex name = row->index();
    for (int column : {logic_columns::Description, logic_columns::Setting}) {
        const QModelIndex cell = name.siblingAtColumn(column);
        emit dataChanged(cell, cell, {Qt::DisplayRole, Qt::ToolTipRole});
    }
}

#include "moc_CustonStandModel.cpp"
