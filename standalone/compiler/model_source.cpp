#include "standalone/compiler/model_source.h"

#include "model/blocks/SequenceProcessBlock.h"
#include "model/services/capplet.h"
#include "model/services/process_edit.h"
#include "model/services/process_json_edit.h"
#include "model/services/processedit.h"

#include <unordered_map>

namespace standalone {

namespace {

using Blocks = std::vector<std::shared_ptr<IProcessBlock>>;
using codegen::SequenceGroup;
using codegen::SequenceSource;

/// @p find gives the block of a uuid, or null.
template <typename Find> SequenceSource sequenceSource(const SequenceInfo& info, const Find& find)
{
    SequenceSource sequence;
    sequence.info = info;
    const std::vector<std::string>* const flows[] = {&info.initialFlow, &info.mainFlow,
                                                     &info.endFlow};
    for (std::size_t i = 0; i < sequence.flows.size(); ++i) {
        for (const std::string& uuid : *flows[i]) {
            if (auto block = find(uuid))
                sequence.flows[i].push_back(std::move(block));
        }
    }
    return sequence;
}

SequenceGroup templateGroup(const processTemplateInfo& info)
{
    std::unordered_map<std::string, std::shared_ptr<IProcessBlock>> blocks;
    for (const Blocks* list : {&info.blocks, &info.subBlocks}) {
        for (const auto& block : *list)
            blocks.emplace(block->uuid, block);
    }
    const auto find = [&](const std::string& uuid) {
        const auto found = blocks.find(uuid);
        return found == blocks.end() ? nullptr : found->second;
    };

    SequenceGroup group;
    group.templateId = info.id;
    group.name = info.name;
    group.variables = info.processVariables;
    group.sequences.push_back(sequenceSource(info.mainSequence, find));
    for (const SequenceInfo& sequence : info.subSequences)
        group.sequences.push_back(sequenceSource(sequence, find));
    for (SequenceSource& sequence : group.sequences) {
        for (const processVariable& variable : info.sequenceVariables) {
            if (variable.ownerId == sequence.info.id)
                sequence.variables.push_back(variable);
        }
    }
    for (const auto& [id, nested] : info.subTemplates)
        group.templates.emplace(id, templateGroup(nested));
    return group;
}

/// The project's template, or else the one that the step carries with it.
processTemplateInfo templateOf(const SequenceProcessBlock& call)
{
    const std::string& id = call.templateId.empty() ? call.carried.id : call.templateId;
    if (process_edit::isHaveTemplateInfo(id))
        return process_edit::getProcessTemplateByID(id);
    const std::string& json = call.templateJson.empty() ? call.carried.json : call.templateJson;
    return json.empty() ? processTemplateInfo() : process_json_edit::readOneTemplateJsonStr(json);
}

void collectTemplates(const Blocks& blocks, SequenceGroup& group)
{
    for (const auto& block : blocks) {
        const auto* call = dynamic_cast<const SequenceProcessBlock*>(block.get());
        if (call && call->sourceKind == SequenceProcessBlock::TemplateSequence) {
            const std::string& id = call->templateId.empty() ? call->carried.id : call->templateId;
            if (!group.templates.count(id)) {
                const processTemplateInfo info = templateOf(*call);
                if (!info.id.empty())
                    group.templates.emplace(id, templateGroup(info));
            }
        }
        collectTemplates(block->children, group);
    }
}

std::vector<codegen::FunctionSignature> runtimeFunctions(const QString& appName)
{
    QList<_DrelFunction> functions;
    std::vector<codegen::FunctionSignature> signatures;
    if (sdk_ui_interface::capplet::getCAppletInnerFuncs(appName, functions) != 0)
        return signatures;
    for (const _DrelFunction& function : qAsConst(functions)) {
        codegen::FunctionSignature signature;
        signature.name =
            std::string(function.prefix) + (function.prefix[0] ? "." : "") + function.name;
        signature.returnType = static_cast<DrelVarType>(function.returnType);
        for (const auto& parameter : function.params) {
            if (!parameter.name[0])
                break;
            if (parameter.type != DrelVoid)
                signature.parameters.push_back(static_cast<DrelVarType>(parameter.type));
        }
        signatures.push_back(std::move(signature));
    }
    return signatures;
}

} // namespace

codegen::AppletSource readAppletSource(const QString& appName, const QString& targetSequenceId,
                                       bool forVci)
{
    namespace model = sdk_ui_interface::processedit;
    const std::string localName = appName.toLocal8Bit().toStdString();

    codegen::AppletSource source;
    source.targetSequenceId = targetSequenceId.toStdString();
    source.forVci = forVci;
    source.globalVariables = process_edit::getAllGlobalVariable();
    source.functions = runtimeFunctions(appName);
    source.applet.name = appName.toStdString();
    source.applet.variables = process_edit::getAllCAppletVariable(localName);
    const auto find = [&](const std::string& uuid) {
        return model::getProcess(appName, QString::fromStdString(uuid));
    };
    for (const SequenceInfo& info : model::getAllSequenceByAppName(appName)) {
        SequenceSource sequence = sequenceSource(info, find);
        sequence.variables = process_edit::getAllSequenceVariable(localName, info.id);
        for (const Blocks& flow : sequence.flows)
            collectTemplates(flow, source.applet);
        source.applet.sequences.push_back(std::move(sequence));
    }
    return source;
}

} // namespace standalone
