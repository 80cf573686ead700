#include "logic/step_creation.h"

#include "edits/DocumentEdits.h"
#include "logic/flow_loader.h"
#include "model/IProcessBlock.h"
#include "model/services/processedit.h"

#include <QStandardItem>

using namespace sdk_ui_interface;

namespace step_creation {
namespace {

Row buildRow(const Request& request)
{
    DocumentEdits& edits = DocumentEdits::instance();
    const QString uuid =
        request.quickStepId.isEmpty()
            ? edits.createProcess(request.appName, request.sequenceId, request.parentUuid,
                                  request.baseType, request.stepType, request.index)
            : edits.createProcessInfoByQuickStep(request.appName, request.sequenceId,
                                                 request.parentUuid, request.quickStepId,
                                                 request.index);
    const auto block = processedit::getProcess(request.appName, uuid);
    if (!block)
        return {};
    const Row row = step_rows::stepRow(*block, step_rows::Purpose::Edit);
    flow_loader::appendRows(row.first(), block->children, step_rows::Purpose::Edit);
    return row;
}

} // namespace

QList<Row> buildRows(const Request& request)
{
    const Row row = buildRow(request);
    if (row.isEmpty())
        return {};
    if (request.baseType != BasicStep || !step_kinds::isOpener(request.stepType))
        return {row};

    Request closer = request;
    closer.stepType = step_kinds::closerOf(request.stepType);
    closer.index = request.index + 1;
    closer.quickStepId.clear();
    const Row closerRow = buildRow(closer);
    if (closerRow.isEmpty()) {
        qDeleteAll(row);
        return {};
    }
    return {row, closerRow};
}

} // namespace step_creation
