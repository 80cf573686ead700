#include "standalone/model_service/stores/TemplateStore.h"

#include "model/blocks/SequenceProcessBlock.h"
#include "standalone/model_service/documents/AppletModel.h"
#include "standalone/model_service/documents/template_json.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/json/LoadReport.h"
#include "standalone/model_service/json/json_text.h"
#include "standalone/model_service/stores/VariableStore.h"
#include "standalone/model_service/stores/sequence_usage.h"

#include <algorithm>
#include <unordered_set>

namespace standalone {

namespace {

using Blocks = std::vector<std::shared_ptr<IProcessBlock>>;

void copyBlocks(const SequenceContent& sequence, Blocks& copies)
{
    for (const auto& flow : sequence.flows) {
        for (const auto& block : flow)
            copies.push_back(block->clone());
    }
}

/// The sequence and all that it leads to, each once, itself first.
std::vector<const SequenceContent*> reachedFrom(const AppletModel& applet,
                                                const SequenceContent& first)
{
    std::vector<const SequenceContent*> reached{&first};
    std::unordered_set<const SequenceContent*> known{&first};
    for (std::size_t next = 0; next < reached.size(); ++next) {
        for (const auto& id : calledSequences(*reached[next], true)) {
            const auto* called = applet.sequence(id);
            if (called && known.insert(called).second)
                reached.push_back(called);
        }
    }
    return reached;
}

processTemplateInfo templateOf(const SequenceProcessBlock& call)
{
    if (const auto* known = templateStore().find(call.templateId))
        return *known;
    const auto& json = call.templateJson.empty() ? call.carried.json : call.templateJson;
    LoadReport report(QStringLiteral("读取模板%1").arg(toText(call.templateName)));
    JsonTree document;
    return parseObject(QByteArray::fromStdString(json), report, document)
               ? readTemplate(document.root(), report, {})
               : processTemplateInfo();
}

void collectTemplates(const Blocks& blocks, std::map<std::string, processTemplateInfo>& templates)
{
    for (const auto& block : blocks) {
        const auto* call = dynamic_cast<const SequenceProcessBlock*>(block.get());
        if (call && call->sourceKind == SequenceProcessBlock::TemplateSequence) {
            const auto info = templateOf(*call);
            if (!info.id.empty())
                templates[info.id] = info;
        }
        collectTemplates(block->children, templates);
    }
}

void collectUsed(const std::vector<processVariable>& variables,
                 const std::unordered_set<std::string>& words, std::vector<processVariable>& used)
{
    std::copy_if(variables.begin(), variables.end(), std::back_inserter(used),
                 [&](const processVariable& variable) { return words.count(variable.name) > 0; });
}

} // namespace

processTemplateInfo makeTemplate(const QString& appName, const AppletModel& applet,
                                 const std::string& sequenceId)
{
    processTemplateInfo info;
    const auto* first = applet.sequence(sequenceId);
    if (!first)
        return info;
    const std::string owner = toLocalName(appName);
    for (const auto* sequence : reachedFrom(applet, *first)) {
        const bool isFirst = sequence == first;
        if (isFirst)
            info.mainSequence = sequence->record();
        else
            info.subSequences.push_back(sequence->record());
        copyBlocks(*sequence, isFirst ? info.blocks : info.subBlocks);
        const auto variables = variableStore().ofSequence(owner, sequence->head.id);
        info.sequenceVariables.insert(info.sequenceVariables.end(), variables.begin(),
                                      variables.end());
    }
    auto words = usedWords(info.blocks);
    words.merge(usedWords(info.subBlocks));
    collectUsed(variableStore().ofApplet(owner), words, info.processVariables);
    collectUsed(variableStore().globals(), words, info.processVariables);
    collectTemplates(info.blocks, info.subTemplates);
    collectTemplates(info.subBlocks, info.subTemplates);
    return info;
}

} // namespace standalone
