#include "model/services/processedit.h"
#include "standalone/model_service/documents/StepTables.h"
#include "standalone/model_service/documents/block_factory.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/stores/AppletStore.h"
#include "standalone/model_service/stores/QuickStepStore.h"
#include "standalone/model_service/stores/compile_marks.h"

using namespace standalone;

namespace sdk_ui_interface {
namespace processedit {

namespace {

QString insertBlock(const QString& appName, const QString& sequenceId, const QString& parentUuid,
                    const std::shared_ptr<IProcessBlock>& block, int index)
{
    auto* applet = appletStore().find(appName);
    if (!applet || !applet->insert(block, toUtf8(sequenceId), toUtf8(parentUuid), index))
        return {};
    markChanged(toLocalName(appName));
    return toText(block->uuid);
}

void appendAll(const AppletModel::Blocks& blocks, AppletModel::Blocks& all)
{
    for (const auto& block : blocks) {
        all.push_back(block);
        appendAll(block->children, all);
    }
}

} // namespace

QString createProcess(const QString& appName, const QString& sequenceId, const QString& parentUuid,
                      logicBlockType baseType, int subType, int index)
{
    if (!isCreatable(baseType, subType))
        return {};
    const auto block = makeBlock(baseType, subType);
    if (baseType == DiagnosticStep) {
        const auto* kind = stepTables().findCustom(toLocalName(appName), baseType, subType);
        if (!kind)
            return {};
        block->property = *kind;
    } else {
        block->property = stepTables().propertyFor(baseType, subType);
    }
    block->uuid = newUuid();
    block->name = block->property.name;
    return insertBlock(appName, sequenceId, parentUuid, block, index);
}

QString createProcessInfoByQuickStep(const QString& appName, const QString& sequenceId,
                                     const QString& parentUuid, const QString& quickStepId,
                                     int index)
{
    const auto quickStep = quickStepStore().find(toUtf8(quickStepId));
    if (!quickStep)
        return {};
    return insertBlock(appName, sequenceId, parentUuid, copyUnderNewUuids(*quickStep), index);
}

std::shared_ptr<IProcessBlock> getProcess(const QString& appName, const QString& blockUuid)
{
    const auto* applet = appletStore().find(appName);
    return applet ? applet->block(toUtf8(blockUuid)) : nullptr;
}

void updateProcess(const QString& appName, const QString& /*sequenceId*/,
                   std::shared_ptr<IProcessBlock> block)
{
    auto* applet = appletStore().find(appName);
    if (applet && block && applet->replace(block))
        markChanged(toLocalName(appName));
}

void removeProcess(const QString& appName, QString /*sequenceId*/, const QString& blockUuid)
{
    if (auto* applet = appletStore().find(appName)) {
        applet->remove(toUtf8(blockUuid));
        markChanged(toLocalName(appName));
    }
}

void removeAllProcessBySequenceID(const QString& appName, QString sequenceId, logicBlockType flow)
{
    auto* applet = appletStore().find(appName);
    if (!applet)
        return;
    for (int each = InitialFlow; each <= EndFlow; ++each) {
        if (flow == NoBlock || flow == each)
            applet->removeFlow(toUtf8(sequenceId), each);
    }
    markChanged(toLocalName(appName));
}

std::vector<std::shared_ptr<IProcessBlock>> getProcessListBySequenceID(const QString& appName,
                                                                       const QString& sequenceId)
{
    std::vector<std::shared_ptr<IProcessBlock>> blocks;
    const auto* applet = appletStore().find(appName);
    const auto* sequence = applet ? applet->sequence(toUtf8(sequenceId)) : nullptr;
    if (sequence) {
        for (const auto& flow : sequence->flows)
            blocks.insert(blocks.end(), flow.begin(), flow.end());
    }
    return blocks;
}

std::vector<std::shared_ptr<IProcessBlock>>
getAllProcessBySequenceID(const QString& appName, const QString& sequenceId,
                          IProcessBlock::ProcessBlockBelong flow)
{
    std::vector<std::shared_ptr<IProcessBlock>> blocks;
    const auto* applet = appletStore().find(appName);
    const auto* sequence = applet ? applet->sequence(toUtf8(sequenceId)) : nullptr;
    for (int each = InitialFlow; sequence && each <= EndFlow; ++each) {
        if (flow == 0 || flow == each + 1)
            appendAll(sequence->flows[static_cast<std::size_t>(each)], blocks);
    }
    return blocks;
}

QString addQuickStepInfo(const QString& appName, const QString& blockUuid)
{
    const auto block = getProcess(appName, blockUuid);
    return block ? toText(quickStepStore().add(*block)) : QString();
}

void removeQuickStepInfo(const QString& id)
{
    quickStepStore().remove(toUtf8(id));
}

QVector<std::shared_ptr<IProcessBlock>> getQuickStepInfo()
{
    const auto& blocks = quickStepStore().all();
    return QVector<std::shared_ptr<IProcessBlock>>(blocks.begin(), blocks.end());
}

std::shared_ptr<IProcessBlock> getQuickStepInfo(const QString& id)
{
    return quickStepStore().find(toUtf8(id));
}

QVector<std::shared_ptr<IProcessBlock>> getQuickStepInfoVector(QStringList ids)
{
    QVector<std::shared_ptr<IProcessBlock>> blocks;
    for (const auto& id : qAsConst(ids)) {
        if (const auto block = getQuickStepInfo(id))
            blocks.append(block);
    }
    return blocks;
}

} // namespace processedit
} // namespace sdk_ui_interface
