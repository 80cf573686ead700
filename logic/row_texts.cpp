#include "logic/row_texts.h"

#include "logic/CustonStandModel.h"
#include "logic/RowIndex.h"
#include "logic/step_rows.h"
#include "model/IProcessBlock.h"
#include "model/services/processedit.h"

using namespace sdk_ui_interface;

namespace row_texts {
namespace {

void refreshRow(QStandardItem* row, const QString& appName, const QSet<QString>& staleUuids)
{
    const QString uuid = step_rows::uuidOf(row);
    if (const auto block = processedit::getProcess(appName, uuid))
        step_rows::refreshTexts(row, *block, staleUuids.contains(uuid));
}

} // namespace

void refresh(const CustonStandModel& model, const QString& appName, const QString& blockUuid,
             const QSet<QString>& staleUuids)
{
    if (QStandardItem* row = model.rowOf(blockUuid))
        refreshRow(row, appName, staleUuids);
}

void refreshCalls(const CustonStandModel& model, const QString& appName,
                  const QSet<QString>& staleUuids)
{
    for (QStandardItem* row : model.rows().calls())
        refreshRow(row, appName, staleUuids);
}

void refreshJumps(const CustonStandModel& model, const QString& appName,
                  const QSet<QString>& staleUuids)
{
    for (QStandardItem* row : model.rows().jumps())
        refreshRow(row, appName, staleUuids);
}

} // namespace row_texts
