#include "logic/rows/flow_loader.h"

#include "logic/rows/uds_steps.h"
#include "model/SequenceInfo.h"
#include "model/blocks/UdsProcessBlock.h"
#include "model/process_records.h"
#include "model/services/processedit.h"

#include <QStandardItemModel>

#include <unordered_map>

namespace flow_loader {
namespace {

void completeProperty(const QString& appName, const QString& sequenceId,
                      const std::shared_ptr<IProcessBlock>& block)
{
    if (block->baseType() != DiagnosticStep || !block->property.name.empty())
        return;
    block->property = uds_steps::kindOf(appName, block->stepType(), block->name);
    sdk_ui_interface::processedit::updateProcess(appName, sequenceId, block);
}

Blocks blocksOf(const QString& appName, const QString& sequenceId,
                const std::vector<std::string>& uuids)
{
    Blocks blocks;
    blocks.reserve(uuids.size());
    for (const std::string& uuid : uuids) {
        auto block =
            sdk_ui_interface::processedit::getProcess(appName, QString::fromStdString(uuid));
        if (block)
            blocks.push_back(std::move(block));
    }
    Blocks pending = blocks;
    while (!pending.empty()) {
        const std::shared_ptr<IProcessBlock> block = std::move(pending.back());
        pending.pop_back();
        completeProperty(appName, sequenceId, block);
        pending.insert(pending.end(), block->children.begin(), block->children.end());
    }
    return blocks;
}

} // namespace

SequenceFlows sequenceFlows(const QString& appName, const SequenceInfo& sequence)
{
    const QString id = QString::fromStdString(sequence.id);
    return {blocksOf(appName, id, sequence.initialFlow), blocksOf(appName, id, sequence.mainFlow),
            blocksOf(appName, id, sequence.endFlow)};
}

SequenceFlows templateFlows(const processTemplateInfo& info, const SequenceInfo& sequence)
{
    std::unordered_map<std::string, std::shared_ptr<IProcessBlock>> byUuid;
    for (const Blocks* blocks : {&info.blocks, &info.subBlocks}) {
        for (const auto& block : *blocks)
            byUuid.emplace(block->uuid, block);
    }
    SequenceFlows flows;
    const std::vector<std::string>* const uuids[] = {&sequence.initialFlow, &sequence.mainFlow,
                                                     &sequence.endFlow};
    for (std::size_t flow = 0; flow < flows.size(); ++flow) {
        for (const std::string& uuid : *uuids[flow]) {
            const auto found = byUuid.find(uuid);
            if (found != byUuid.end())
                flows[flow].push_back(found->second);
        }
    }
    return flows;
}

void appendRows(QStandardItem* parent, const Blocks& blocks, step_rows::Purpose purpose)
{
    // Trees may be deep, so the walk keeps its own stack.
    struct Level
    {
        QStandardItem* parent;
        const Blocks* blocks;
    };
    std::vector<Level> pending{{parent, &blocks}};
    while (!pending.empty()) {
        const Level level = pending.back();
        pending.pop_back();
        for (const std::shared_ptr<IProcessBlock>& block : *level.blocks) {
            if (purpose == step_rows::Purpose::Run && block->enableState == 0)
                continue;
            const QList<QStandardItem*> row = step_rows::stepRow(*block, purpose);
            level.parent->appendRow(row);
            if (!block->children.empty())
                pending.push_back({row.first(), &block->children});
        }
    }
}

Qt::CheckState flowCheckState(const Blocks& blocks)
{
    std::size_t enabled = 0;
    for (const auto& block : blocks)
        enabled += block->enableState != 0;
    if (enabled == blocks.size())
        return Qt::Checked;
    return enabled == 0 ? Qt::Unchecked : Qt::PartiallyChecked;
}

void fill(QStandardItemModel* model, const SequenceFlows& flows, step_rows::Purpose purpose)
{
    model->setHorizontalHeaderLabels(step_rows::headers(purpose));
    for (std::size_t flow = 0; flow < flows.size(); ++flow) {
        // The flow's row joins the model last: nobody hears of a single row under it.
        const QList<QStandardItem*> row = step_rows::flowRow(logicBlockType(flow), purpose);
        appendRows(row.first(), flows[flow], purpose);
        if (purpose == step_rows::Purpose::Edit)
            row.first()->setCheckState(flowCheckState(flows[flow]));
        model->appendRow(row);
    }
}

} // namespace flow_loader
