#include "logic/palette/palette_choice.h"

#include "logic/rows/logic_roles.h"
#include "logic/rows/uds_steps.h"
#include "model/IProcessBlock.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"

#include <QCoreApplication>
#include <QTreeWidgetItem>

namespace palette_choice {
namespace {

bool isQuickStep(const QTreeWidgetItem* item)
{
    return item->data(0, logic_roles::IsQuickStep).toBool();
}

/// A kind that no table holds has an empty record, which doesn't hide it.
BaseStepProperty kindOf(const Step& step, const QString& owner)
{
    switch (step.baseType) {
    case BasicStep:
        return process_edit::getDefaultBaseStepProperty(BasicStep, step.stepType);
    case DiagnosticStep:
        return uds_steps::kindOf(owner, step.stepType, step.text.toStdString());
    default:
        return {};
    }
}

} // namespace

std::optional<Step> stepOf(const QTreeWidgetItem* item, const QString& owner)
{
    if (!item)
        return std::nullopt;
    const Step step{logicBlockType(item->data(0, logic_roles::BaseType).toInt()),
                    item->data(0, logic_roles::StepType).toInt(), item->text(0), quickStepId(item)};
    if (isQuickStep(item)) {
        const auto block = sdk_ui_interface::processedit::getQuickStepInfo(step.quickStepId);
        if (!block || !block->property.showInPalette)
            return std::nullopt;
    } else if (!kindOf(step, owner).showInPalette) {
        return std::nullopt;
    }
    return step;
}

QString quickStepId(const QTreeWidgetItem* item)
{
    return isQuickStep(item) ? item->data(0, logic_roles::QuickStepId).toString() : QString();
}

QList<MenuEntry> menuOf(const QTreeWidgetItem* item)
{
    QList<MenuEntry> entries;
    if (item && item->data(0, logic_roles::Draggable).toBool())
        entries.append({Action::AddStep, QCoreApplication::translate("StepTree", "添加流程")});
    if (item && isQuickStep(item))
        entries.append(
            {Action::RemoveQuickStep, QCoreApplication::translate("StepTree", "从快捷添加中移除")});
    return entries;
}

} // namespace palette_choice
