#include "standalone/runtime/step_names.h"

#include "model/IProcessBlock.h"
#include "model/process_records.h"
#include "model/services/processedit.h"
#include "model/step_kinds.h"

namespace standalone {

namespace {

using Blocks = std::vector<std::shared_ptr<IProcessBlock>>;

/// @p levels: for the blocks themselves.
void collect(const Blocks& blocks, const QString& sequence, int levels,
             QHash<QString, StepName>& names)
{
    for (const auto& block : blocks) {
        names.insert(QString::fromStdString(block->uuid),
                     {sequence, QString::fromStdString(block->name), levels});
        const bool isLoop = block->baseType() == BasicStep && step_kinds::isLoop(block->stepType());
        collect(block->children, sequence, isLoop ? 0 : levels < 0 ? levels : levels + 1, names);
    }
}

} // namespace

StepNames::Names StepNames::namesOf(const TracedStep& step) const
{
    namespace service = sdk_ui_interface::processedit;
    Names names;
    if (!step.templateId.empty()) {
        const processTemplateInfo info =
            service::getProcessTemplateByID(QString::fromStdString(step.templateId));
        collect(info.blocks, QString::fromStdString(info.name), -1, names);
        collect(info.subBlocks, QString::fromStdString(info.name), -1, names);
        return names;
    }
    const QString sequenceId = QString::fromStdString(step.sequenceId);
    const SequenceInfo info = service::getSequence(m_appName, sequenceId);
    collect(service::getProcessListBySequenceID(m_appName, sequenceId),
            QString::fromStdString(info.name), -1, names);
    return names;
}

StepName StepNames::find(const TracedStep& step)
{
    const QString stepId = QString::fromStdString(step.stepId);
    const QString sequenceId = QString::fromStdString(step.sequenceId);
    const StepName unknown = {sequenceId, stepId, -1};
    if (m_appName.isEmpty())
        return unknown;
    const QString owner =
        step.templateId.empty() ? sequenceId : QString::fromStdString(step.templateId);
    if (!m_known.contains(owner))
        m_known.insert(owner, namesOf(step));
    return m_known[owner].value(stepId, unknown);
}

} // namespace standalone
