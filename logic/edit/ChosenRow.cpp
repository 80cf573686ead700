#include "logic/edit/ChosenRow.h"

#include "logic/look/tree_look.h"
#include "logic/rows/logic_roles.h"
#include "model/step_kinds.h"

#include <QItemSelectionModel>
#include <QTreeView>

#include <utility>

ChosenRow::ChosenRow(QTreeView* tree) : m_tree(*tree)
{
    connect(tree, &QTreeView::clicked, this, &ChosenRow::choose);
}

void ChosenRow::follow()
{
    m_told.clear();
    // Later: rows that are being added or removed change the current one on the way, and what is
    // behind that tells of the last one itself.
    connect(m_tree.selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] {
        if (std::exchange(m_isDue, true))
            return;
        QMetaObject::invokeMethod(this, &ChosenRow::chooseCurrent, Qt::QueuedConnection);
    });
}

void ChosenRow::choose(const QModelIndex& row)
{
    const QModelIndex name = row.siblingAtColumn(logic_columns::Name);
    m_told = name.data(logic_roles::BlockUuid).toString();
    if (!row.isValid()) {
        emit chosen(NoBlock, QString());
        return;
    }
    if (tree_look::mixesFlowsAndSteps(m_tree.selectionModel())) {
        m_tree.clearSelection();
        m_tree.setCurrentIndex(row);
    }
    emit chosen(name.data(logic_roles::BaseType).toInt(), m_told);
}

void ChosenRow::chooseCurrent()
{
    m_isDue = false;
    const QModelIndex current = m_tree.currentIndex().siblingAtColumn(logic_columns::Name);
    if (current.data(logic_roles::BlockUuid).toString() != m_told)
        choose(current);
}

#include "moc_ChosenRow.cpp"
