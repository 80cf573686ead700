#include "logic/edit/step_menu.h"

#include "logic/rows/logic_roles.h"
#include "logic/rows/step_rows.h"
#include "logic/rows/uds_steps.h"
#include "model/IProcessBlock.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"

#include <QCoreApplication>
#include <QMenu>
#include <QTreeView>

#include <algorithm>

using namespace sdk_ui_interface;

namespace step_menu {

namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("LogicView", text);
}

int baseTypeOf(const QModelIndex& row)
{
    return row.siblingAtColumn(logic_columns::Name).data(logic_roles::BaseType).toInt();
}

bool isDiagnostic(const QModelIndex& row)
{
    return baseTypeOf(row) == DiagnosticStep;
}

void addKind(QMenu& menu, const BaseStepProperty& kind,
             const std::function<void(const BaseStepProperty&)>& choose)
{
    const bool isQuickSteps =
        kind.baseType == BasicStep && kind.stepType == step_type::QuickStepFolder;
    if (!kind.showInPalette || isQuickSteps)
        return;
    const QString name = step_rows::translatedName(kind.name);
    if (kind.children.empty()) {
        const QIcon icon =
            kind.baseType == BasicStep ? step_rows::icon(kind.baseType, kind.stepType) : QIcon();
        QObject::connect(menu.addAction(icon, name), &QAction::triggered, &menu,
                         [choose, kind] { choose(kind); });
        return;
    }
    QMenu* folder = menu.addMenu(name);
    for (const BaseStepProperty& child : kind.children)
        addKind(*folder, child, choose);
}

} // namespace

QVector<Entry> entriesFor(const QTreeView& tree, const QString& appName)
{
    const QModelIndex current = tree.currentIndex();
    const QModelIndexList rows = tree.selectionModel()->selectedRows(logic_columns::Name);
    const bool isOneRow = rows.size() <= 1;
    QVector<Entry> entries;
    if (current.isValid() && baseTypeOf(current) > EndFlow) {
        const auto isKept = [&appName](const QModelIndex& row) {
            const auto block =
                processedit::getProcess(appName, row.data(logic_roles::BlockUuid).toString());
            return !block || block->property.showInPalette;
        };
        if (isOneRow)
            entries.append({Action::RemoveStep, translated("删除节点")});
        if (std::any_of(rows.begin(), rows.end(), isDiagnostic))
            entries.append({Action::SetEcus, translated("批量设置ecu")});
        if (isDiagnostic(current))
            entries.append(
                {Action::EditDiagnosis, translated("诊断编辑"), uds_steps::canBeEdited(appName)});
        if (std::any_of(rows.begin(), rows.end(), isKept))
            entries.append({Action::AddQuickSteps, translated("添加至快捷添加")});
    } else if (isOneRow) {
        entries.append({Action::RemoveAll, translated("删除所有节点")});
    }
    entries.append({Action::Enable, translated("启用选中节点")});
    entries.append({Action::Disable, translated("禁用选中节点")});
    return entries;
}

void addKinds(QMenu& menu, const std::function<void(const BaseStepProperty&)>& choose)
{
    for (const BaseStepProperty& kind : process_edit::getAllDefaultBaseStepProperty())
        addKind(menu, kind, choose);
}

} // namespace step_menu
