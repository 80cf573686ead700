#include "workbench/step_locator.h"

#include "logic/LogicView.h"
#include "logic/rows/logic_roles.h"
#include "shell/ProcessEditWidget.h"

#include <QStandardItemModel>
#include <QTreeView>

bool showStep(ProcessEditWidget& editor, const QString& sequenceId, const QString& stepId)
{
    auto* view = editor.findChild<LogicView*>();
    QStandardItemModel* model = view ? view->editModel(sequenceId) : nullptr;
    if (!model)
        return false;
    editor.setCurrentShowSequence(sequenceId);
    view->showEditTab();
    if (stepId.isEmpty())
        return true;
    const QModelIndexList rows = model->match(model->index(0, 0), logic_roles::BlockUuid, stepId, 1,
                                              Qt::MatchExactly | Qt::MatchRecursive);
    auto* tree = view->findChild<QTreeView*>(QStringLiteral("treeView"));
    if (rows.isEmpty() || !tree)
        return false;
    tree->setCurrentIndex(rows.first());
    tree->scrollTo(rows.first());
    tree->setFocus();
    view->onItemClicked(rows.first());
    return true;
}
