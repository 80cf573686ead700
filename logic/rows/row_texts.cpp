#include "logic/rows/row_texts.h"

#include "logic/rows/CustonStandModel.h"
#include "logic/rows/RowIndex.h"
#include "logic/rows/step_rows.h"
#include "model/IProcessBlock.h"
#include "model/services/processedit.h"

namespace row_texts {
namespace {

void refreshRow(CustonStandModel& model, QStandardItem* row, const QString& appName)
{
    const auto block = sdk_ui_interface::processedit::getProcess(appName, step_rows::uuidOf(row));
    if (!block)
        return;
    row->setText(step_rows::translatedName(block->name));
    step_rows::followProperty(row, *block);
    model.tellTextsChanged(row);
}

} // namespace

void refresh(CustonStandModel& model, const QString& appName, const QString& blockUuid)
{
    if (QStandardItem* row = model.rowOf(blockUuid))
        refreshRow(model, row, appName);
}

void refreshCalls(CustonStandModel& model, const QString& appName)
{
    for (QStandardItem* row : model.rows().calls())
        refreshRow(model, row, appName);
}

void refreshJumps(CustonStandModel& model, const QString& appName)
{
    for (QStandardItem* row : model.rows().jumps())
        refreshRow(model, row, appName);
}

} // namespace row_texts
