#include "logic/look/tree_look.h"

#include "logic/rows/logic_roles.h"
#include "model/colour_rules.h"
#include "model/services/widget_bases.h"
#include "model/step_kinds.h"

#include <QDrag>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QMimeData>
#include <QSet>
#include <QStandardItem>
#include <QTreeView>

namespace {
constexpr int IconSize = 26;
constexpr int Indentation = 20;
} // namespace

void tree_look::apply(QTreeView* tree)
{
    tree->setIconSize(StyleManager::toolbarButtonIconSize(IconSize));
    tree->setIndentation(StyleManager::scale(Indentation));
    tree->header()->setSectionsMovable(false);
    tree->header()->setSectionResizeMode(QHeaderView::Interactive);
    tree->header()->setStretchLastSection(true);
    tree->header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    tree->header()->setHighlightSections(false);

    // Texts keep their colours on the selected row, so its ground is near the tree's.
    QPalette palette = tree->palette();
    palette.setColor(QPalette::Highlight, colour_rules::stepSelection(palette));
    palette.setColor(QPalette::HighlightedText, colour_rules::stepText(palette, false));
    tree->setPalette(palette);
}

void tree_look::redraw(QTreeView* tree, const QVector<QStandardItem*>& rows)
{
    // The view looks for a row by walking along its rows.
    constexpr int FewRows = 20;
    if (rows.size() > FewRows) {
        tree->viewport()->update();
        return;
    }
    QSet<QModelIndex> above;
    for (QModelIndex index = tree->indexAt(QPoint(0, 0)).parent(); index.isValid();
         index = index.parent())
        above.insert(index);
    for (const QStandardItem* row : rows) {
        if (!above.contains(row->index()))
            tree->update(row->index());
    }
}

Qt::DropAction tree_look::drag(QAbstractItemView& view, const QModelIndex& row, QMimeData* data,
                               Qt::DropActions actions)
{
    const QPoint besidePointer(14, 12); // which still shows where it points to
    auto* drag = new QDrag(&view);
    drag->setMimeData(data);
    drag->setPixmap(view.viewport()->grab(view.visualRect(row) & view.viewport()->rect()));
    drag->setHotSpot(-besidePointer);
    return drag->exec(actions);
}

bool tree_look::mixesFlowsAndSteps(const QItemSelectionModel* selection)
{
    if (!selection)
        return false;
    bool flows = false;
    bool steps = false;
    const QModelIndexList rows = selection->selectedRows(logic_columns::Name);
    for (const QModelIndex& row : rows) {
        if (row.data(logic_roles::BaseType).toInt() <= EndFlow)
            flows = true;
        else
            steps = true;
    }
    return flows && steps;
}
