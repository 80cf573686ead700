// The context menu of the edit tab.

#include "edits/DocumentEdits.h"
#include "logic/LogicView.h"
#include "logic/LogicViewParts.h"
#include "logic/edit/step_menu.h"
#include "logic/rows/CustonStandModel.h"
#include "logic/rows/logic_roles.h"
#include "model/BaseStepProperty.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QSet>

using step_menu::Action;

void LogicView::contextMenuEvent(QContextMenuEvent* event)
{
    if (isRunTabShown() || !currentModel())
        return;
    const QTreeView& tree = *m->ui.treeView;
    onItemClicked(tree.currentIndex().siblingAtColumn(logic_columns::Name));

    auto* menu = new QMenu(tr("Context Menu"), this);
    menu->setObjectName(QStringLiteral("stepMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    step_menu::addKinds(*menu->addMenu(tr("插入步骤")), [this](const BaseStepProperty& kind) {
        addStep(kind.baseType, kind.stepType, QString(), false, false);
    });
    const QModelIndexList selected = tree.selectionModel()->selectedRows(logic_columns::Name);
    const QList<QPersistentModelIndex> rows(selected.begin(), selected.end());
    const auto entries = step_menu::entriesFor(tree, m_appName);
    for (const step_menu::Entry& entry : entries) {
        QAction* action = menu->addAction(entry.text);
        action->setEnabled(entry.isEnabled);
        connect(action, &QAction::triggered, this,
                [this, rows, what = entry.action] { onMenuAction(what, rows); });
    }
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QPoint below = tree.visualRect(tree.currentIndex()).bottomLeft();
    menu->popup(isByKey ? tree.viewport()->mapToGlobal(below) : event->globalPos());
}

void LogicView::onMenuAction(Action action, const QList<QPersistentModelIndex>& rows)
{
    switch (action) {
    case Action::RemoveStep:
        removeRowSlot();
        break;
    case Action::SetEcus:
        m->udsSteps->setEcus(rows);
        break;
    case Action::EditDiagnosis:
        onItemDoubleClicked(m->ui.treeView->currentIndex());
        break;
    case Action::AddQuickSteps:
        onQucikAddSlot();
        break;
    case Action::RemoveAll:
        removeAllRows();
        break;
    case Action::Enable:
        switchRows(rows, Qt::Checked);
        break;
    case Action::Disable:
        switchRows(rows, Qt::Unchecked);
        break;
    }
}

/// As if the box of each row had been clicked; what is under a selected row follows that.
void LogicView::switchRows(const QList<QPersistentModelIndex>& rows, Qt::CheckState state)
{
    const CustonStandModel* model = currentModel();
    if (!model)
        return;
    QVector<QStandardItem*> chosen;
    QSet<const QStandardItem*> all;
    for (const QModelIndex& row : rows) {
        if (QStandardItem* item = model->itemFromIndex(row)) {
            chosen.append(item);
            all.insert(item);
        }
    }
    const DocumentEdits::Act act;
    for (QStandardItem* item : qAsConst(chosen)) {
        if (!all.contains(item->parent()))
            m->checkStates.setBox(item, state);
    }
    m->sheets->refreshJumps(m_currentSequenceId);
    m->ui.treeView->viewport()->update();
}
