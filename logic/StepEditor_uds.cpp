// Diagnostic steps, which are set up in a dialog of their own.

#include "edits/DocumentEdits.h"
#include "logic/CustonStandModel.h"
#include "logic/StepEditor.h"
#include "logic/logic_roles.h"
#include "logic/step_rows.h"
#include "logic/uds_steps.h"
#include "model/blocks/UdsProcessBlock.h"
#include "model/services/processedit.h"

using namespace sdk_ui_interface;
using step_rows::uuidOf;

void StepEditor::addUdsStep(const NewStep& step)
{
    const QString sequenceId = currentModel()->sequenceId();
    const BaseStepProperty kind =
        uds_steps::kindOf(m_appName, step.stepType, step.name.toStdString());
    UDSProcessInfo info = uds_steps::infoOf(kind);
    if (!openUdsEditor(sequenceId, step.stepType, info))
        return;
    // Much may have happened while the dialog was open.
    if (!currentModel() || currentModel()->sequenceId() != sequenceId)
        return;
    const DocumentEdits::Act act;
    QStandardItem* row = create(step);
    if (!row) {
        warn(QT_TRANSLATE_NOOP("LogicView", "添加步骤失败"));
        return;
    }
    takeOver(row, kind, info);
    show(row);
}

bool StepEditor::editUdsStep(const QModelIndex& row)
{
    const QModelIndex name = row.siblingAtColumn(logic_columns::Name);
    if (name.data(logic_roles::BaseType).toInt() != DiagnosticStep ||
        !uds_steps::canBeEdited(m_appName))
        return false;
    const QString uuid = name.data(logic_roles::BlockUuid).toString();
    const auto block =
        std::dynamic_pointer_cast<UdsProcessBlock>(processedit::getProcess(m_appName, uuid));
    if (!block)
        return true;
    UDSProcessInfo info = uds_steps::infoOf(*block);
    if (!openUdsEditor(uuid, block->stepType(), info))
        return true;
    const CustonStandModel* model = currentModel();
    QStandardItem* item = model ? model->rowOf(uuid) : nullptr;
    if (!item)
        return true;
    takeOver(item, block->property, info);
    emit udsBlockRemoved(uuid);
    emit udsBlockAdded(uuid);
    emit rowChosen(item->index());
    emit edited();
    return true;
}

bool StepEditor::openUdsEditor(const QString& id, int stepType, UDSProcessInfo& info)
{
    if (!m_udsEditor) {
        emit refused(tr("没有可用的诊断编辑器"));
        return false;
    }
    return m_udsEditor(m_appName, id, stepType, info);
}

void StepEditor::takeOver(QStandardItem* row, const BaseStepProperty& kind,
                          const UDSProcessInfo& info)
{
    const auto block =
        std::dynamic_pointer_cast<UdsProcessBlock>(processedit::getProcess(m_appName, uuidOf(row)));
    if (!block)
        return;
    DocumentEdits::instance().updateProcess(m_appName, currentModel()->sequenceId(), block, [&] {
        block->property = kind;
        uds_steps::takeOver(*block, info);
    });
    emit blockChanged(uuidOf(row));
    emit udsRuntimeStale();
}

void StepEditor::tellOfUdsBlocks(const QStandardItem* row, void (StepEditor::*tell)(QString),
                                 int levels)
{
    if (row->data(logic_roles::BaseType).toInt() == DiagnosticStep)
        (this->*tell)(uuidOf(row));
    for (int i = 0; levels > 0 && i < row->rowCount(); ++i)
        tellOfUdsBlocks(row->child(i), tell, levels - 1);
}
