#include "logic/rows/CustonStandModel.h"

#include "logic/rows/RowIndex.h"
#include "logic/rows/logic_roles.h"
#include "logic/rows/step_mime.h"
#include "logic/rows/step_rows.h"
#include "model/IProcessBlock.h"
#include "model/services/processedit.h"

#include <QMimeData>

using structure_rules::Refusal;

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

QMimeData* CustonStandModel::mimeData(const QModelIndexList& indexes) const
{
    const QStandardItem* row =
        indexes.isEmpty() ? nullptr
                          : itemFromIndex(indexes.first().siblingAtColumn(logic_columns::Name));
    return row ? step_mime::ofRow(*row).release() : nullptr;
}

step_drops::Drop CustonStandModel::dropAt(int row, const QModelIndex& parent) const
{
    step_drops::Drop drop;
    drop.row = row;
    drop.target = itemFromIndex(parent.siblingAtColumn(logic_columns::Name));
    drop.isOnGround = !drop.target;
    if (drop.isOnGround)
        drop.target = item(MainFlow);
    return drop;
}

/// Fills @p drop with what is dropped.
Refusal CustonStandModel::check(const step_mime::Step& step, step_drops::Drop& drop) const
{
    const auto isOther = [](const QString& told, const QString& own) {
        return !told.isEmpty() && told != own;
    };
    if (isOther(step.appName, m_appName) || isOther(step.sequenceId, m_sequenceId))
        return Refusal::ForeignStep;
    drop.kind = {step.baseType, step.stepType};
    if (step.isRow()) {
        const QStandardItem* row = rowOf(step.blockUuid);
        if (!row || quintptr(row) != step.item || step_rows::isFlow(row))
            return Refusal::ForeignStep;
        drop.dragged = row;
        drop.kind = {row->data(logic_roles::BaseType).toInt(),
                     row->data(logic_roles::StepType).toInt()};
    }
    return drop.target ? step_drops::check(drop) : Refusal::NoStep;
}

QString CustonStandModel::dropRefusal(const QMimeData* data, int row,
                                      const QModelIndex& parent) const
{
    const auto step = data ? step_mime::read(*data) : std::nullopt;
    auto drop = dropAt(row, parent);
    return structure_rules::reasonOf(step ? check(*step, drop) : Refusal::NoStep);
}

bool CustonStandModel::canDropMimeData(const QMimeData* data, Qt::DropAction, int row, int,
                                       const QModelIndex& parent) const
{
    return dropRefusal(data, row, parent).isEmpty();
}

bool CustonStandModel::dropMimeData(const QMimeData* data, Qt::DropAction, int row, int,
                                    const QModelIndex& parent)
{
    const auto step = data ? step_mime::read(*data) : std::nullopt;
    auto drop = dropAt(row, parent);
    if (!step || check(*step, drop) != Refusal::None)
        return false;
    if (drop.dragged) {
        moveDragged(drop);
        return true;
    }
    return addDropped(*step, drop);
}

bool CustonStandModel::addDropped(const step_mime::Step& step, const step_drops::Drop& drop)
{
    const QStandardItem* behind = drop.row < 0 ? nullptr : drop.target->child(drop.row);
    const bool isInsert = behind != nullptr;
    const QModelIndex anchor = (isInsert ? behind : drop.target)->index();
    const auto baseType = logicBlockType(step.baseType);
    if (step.quickStepId.isEmpty())
        emit sigAppendItemNew(anchor, baseType, step.stepType, step.name, isInsert);
    else
        emit sigAppendQuickStepItemNew(anchor, baseType, step.stepType, step.quickStepId, isInsert);
    return isInsert;
}

void CustonStandModel::moveDragged(const step_drops::Drop& drop)
{
    QStandardItem* source = drop.dragged->parent();
    const structure_rules::Rows rows = step_drops::rowsMoved(drop.dragged);
    const int count = rows.last - rows.first + 1;
    const structure_rules::Place place = step_drops::placeOf(drop);
    int to = place.row;
    if (place.parent == source && to > rows.last)
        to -= count;
    if (place.parent == source && to == rows.first)
        return; // where they are
    QList<QList<QStandardItem*>> moved;
    for (int i = 0; i < count; ++i)
        moved.append(source->takeRow(rows.first));
    QModelIndexList places;
    for (const QList<QStandardItem*>& row : qAsConst(moved)) {
        place.parent->insertRow(to++, row);
        places.append(row.first()->index());
    }
    emit dropEnd(places);
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
