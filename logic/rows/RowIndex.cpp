#include "logic/rows/RowIndex.h"

#include "logic/rows/RowItem.h"
#include "logic/rows/logic_roles.h"
#include "model/step_kinds.h"

#include <QStandardItemModel>
#include <QVector>

namespace {

/// Calls @p visit for the column 0 items of the rows first..last under @p parent and of all rows
/// below them.
template <typename Visit> void visitRows(QStandardItem* parent, int first, int last, Visit visit)
{
    QVector<QStandardItem*> pending;
    for (int row = first; row <= last; ++row) {
        if (QStandardItem* item = parent->child(row))
            pending.append(item);
    }
    while (!pending.isEmpty()) {
        QStandardItem* item = pending.takeLast();
        visit(item);
        for (int row = 0; row < item->rowCount(); ++row) {
            if (QStandardItem* child = item->child(row))
                pending.append(child);
        }
    }
}

QStandardItem* parentItem(QStandardItemModel* model, const QModelIndex& parent)
{
    return parent.isValid() ? model->itemFromIndex(parent) : model->invisibleRootItem();
}

// Taken out rows forget what they counted below them: they are counted anew when they come back.
void countInParent(QStandardItem* item, int change)
{
    const RowItem* row = RowItem::from(item);
    RowItem* parent = RowItem::from(item->parent());
    if (row && parent && row->isUnchecked())
        parent->countUnchecked(change);
}

} // namespace

RowIndex::RowIndex(QStandardItemModel* model) : QObject(model), m_model(model)
{
    connect(model, &QAbstractItemModel::rowsInserted, this, &RowIndex::addRows);
    connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, this, &RowIndex::removeRows);
    connect(model, &QAbstractItemModel::modelAboutToBeReset, this, [this] {
        m_items.clear();
        m_jumps.clear();
        m_calls.clear();
    });
    connect(model, &QAbstractItemModel::modelReset, this,
            [this] { addRows(QModelIndex(), 0, m_model->rowCount() - 1); });
}

QSet<QStandardItem*>* RowIndex::setFor(const QStandardItem* item)
{
    const int stepType = item->data(logic_roles::StepType).toInt();
    if (stepType != step_type::Goto && stepType != step_type::Sequence)
        return nullptr;
    if (item->data(logic_roles::BaseType).toInt() != BasicStep)
        return nullptr;
    return stepType == step_type::Goto ? &m_jumps : &m_calls;
}

void RowIndex::addRows(const QModelIndex& parent, int first, int last)
{
    visitRows(parentItem(m_model, parent), first, last, [this](QStandardItem* item) {
        const QString uuid = item->data(logic_roles::BlockUuid).toString();
        if (!uuid.isEmpty())
            m_items.insert(uuid, item);
        countInParent(item, 1);
        if (QSet<QStandardItem*>* set = setFor(item))
            set->insert(item);
    });
}

void RowIndex::removeRows(const QModelIndex& parent, int first, int last)
{
    visitRows(parentItem(m_model, parent), first, last, [this](QStandardItem* item) {
        const auto found = m_items.find(item->data(logic_roles::BlockUuid).toString());
        // A moved row may have been inserted anew before its old place is removed.
        if (found != m_items.end() && *found == item)
            m_items.erase(found);
        countInParent(item, -1);
        if (QSet<QStandardItem*>* set = setFor(item))
            set->remove(item);
    });
}

#include "moc_RowIndex.cpp"
