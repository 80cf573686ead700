#include "variables/TreeState.h"

#include "variables/variable_rows.h"

#include <QItemSelectionModel>
#include <QScrollBar>
#include <QTreeView>

using namespace variable_rows;

// Groups have no uuid; their scope is as good.
QString TreeState::keyOf(const QModelIndex& row)
{
    return isGroup(row) ? QString::number(row.row()) : uuidOf(row);
}

TreeState::TreeState(const QTreeView& tree)
{
    if (!tree.model())
        return;
    for (int group = 0; group < tree.model()->rowCount(); ++group) {
        if (!tree.isExpanded(tree.model()->index(group, NameColumn)))
            m_collapsed.insert(group);
    }
    for (const QModelIndex& index : tree.selectionModel()->selectedIndexes()) {
        if (index.column() == NameColumn)
            m_selected.insert(keyOf(index));
    }
    m_current = keyOf(rowOf(tree.currentIndex()));
    m_currentColumn = tree.currentIndex().column();
    m_scrollPosition = tree.verticalScrollBar()->value();
}

void TreeState::restore(QTreeView& tree) const
{
    const QAbstractItemModel& model = *tree.model();
    QItemSelection selection;
    QModelIndex current;
    const auto visit = [&](const QModelIndex& row) {
        const QString key = keyOf(row);
        if (m_selected.contains(key)) {
            const QModelIndex end = row.sibling(row.row(), ColumnCount - 1);
            selection.append(QItemSelectionRange(row, end));
        }
        if (!m_current.isEmpty() && key == m_current)
            current = row.sibling(row.row(), m_currentColumn);
    };
    for (int groupRow = 0; groupRow < model.rowCount(); ++groupRow) {
        const QModelIndex group = model.index(groupRow, NameColumn);
        tree.setExpanded(group, !m_collapsed.contains(groupRow));
        visit(group);
        for (int row = 0; row < model.rowCount(group); ++row)
            visit(model.index(row, NameColumn, group));
    }
    tree.selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    tree.selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    tree.verticalScrollBar()->setValue(m_scrollPosition);
}
