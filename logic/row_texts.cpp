#include "logic/row_texts.h"

#include "logic/CustonStandModel.h"
#include "logic/RowIndex.h"
#include "logic/logic_roles.h"
#include "logic/step_rows.h"
#include "model/IProcessBlock.h"
#include "model/services/processedit.h"

using namespace sdk_ui_interface;

namespace row_texts {
namespace {

bool isBasicStep(const QStandardItem& row, int stepType)
{
    return row.data(logic_roles::StepType).toInt() == stepType &&
           row.data(logic_roles::BaseType).toInt() == BasicStep;
}

} // namespace

void refresh(const CustonStandModel& model, const QString& appName, const QString& blockUuid,
             const QSet<QString>& staleUuids)
{
    QStandardItem* row = model.rowOf(blockUuid);
    const auto block = row ? processedit::getProcess(appName, blockUuid) : nullptr;
    if (block)
        step_rows::refreshTexts(row, *block, staleUuids.contains(blockUuid));
}

void refreshCalls(const CustonStandModel& model, const QString& appName,
                  const QSet<QString>& staleUuids)
{
    const auto& items = model.rows().items();
    for (auto row = items.begin(); row != items.end(); ++row) {
        if (isBasicStep(*row.value(), step_type::Sequence))
            refresh(model, appName, row.key(), staleUuids);
    }
}

void refreshJumps(const CustonStandModel& model, const QString& appName,
                  const QSet<QString>& staleUuids)
{
    for (int i = InitialFlow; i <= EndFlow; ++i) {
        const QStandardItem* flow = model.rowOf(QString::number(i));
        for (int row = 0; flow && row < flow->rowCount(); ++row) {
            const QStandardItem& step = *flow->child(row);
            if (isBasicStep(step, step_type::Goto))
                refresh(model, appName, step.data(logic_roles::BlockUuid).toString(), staleUuids);
        }
    }
}

} // namespace row_texts
