#include "standalone/model_service/documents/template_json.h"

#include "model/IProcessBlock.h"
#include "standalone/model_service/documents/BlockReader.h"
#include "standalone/model_service/documents/BlockWriter.h"
#include "standalone/model_service/documents/sequence_json.h"
#include "standalone/model_service/documents/variable_json.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/json/FieldReader.h"
#include "standalone/model_service/json/FieldWriter.h"

#include <unordered_map>

namespace standalone {

namespace {

using Blocks = std::vector<std::shared_ptr<IProcessBlock>>;
using BlocksByUuid = std::unordered_map<std::string, std::shared_ptr<IProcessBlock>>;

BlocksByUuid byUuid(const Blocks& blocks)
{
    BlocksByUuid map;
    for (const auto& block : blocks)
        map[block->uuid] = block;
    return map;
}

SequenceContent contentOf(const SequenceInfo& info, const BlocksByUuid& blocks)
{
    SequenceContent content;
    content.head = info;
    const std::vector<std::string>* const flows[] = {&info.initialFlow, &info.mainFlow,
                                                     &info.endFlow};
    for (std::size_t flow = 0; flow < 3; ++flow) {
        for (const auto& uuid : *flows[flow]) {
            const auto found = blocks.find(uuid);
            if (found != blocks.end())
                content.flows[flow].push_back(found->second);
        }
    }
    return content;
}

SequenceInfo infoOf(const SequenceContent& content, Blocks& blocks)
{
    for (const auto& flow : content.flows)
        blocks.insert(blocks.end(), flow.begin(), flow.end());
    return content.record();
}

void writeVariables(std::string& json, const std::vector<processVariable>& variables,
                    processVariableType scope)
{
    json += '[';
    for (std::size_t i = 0; i < variables.size(); ++i) {
        json += i > 0 ? "," : "";
        writeVariable(json, {variables[i], {}}, scope, {});
    }
    json += ']';
}

std::vector<processVariable> readRecords(FieldReader& reader, const char* name, LoadReport& report,
                                         const DocumentPlace& where, processVariableType scope)
{
    std::vector<processVariable> variables;
    const auto array = reader.takeArray(name);
    for (auto& stored : readVariables(array, report, {name, where}, scope, {}))
        variables.push_back(std::move(stored.variable));
    return variables;
}

/// Templates in templates: deeper ones are left out.
constexpr int MaxNesting = 32;

processTemplateInfo readNested(const JsonValue& object, LoadReport& report,
                               const DocumentPlace& where, int depth)
{
    processTemplateInfo info;
    FieldReader reader(object, report, where);
    reader.field("id", info.id);
    reader.field("name", info.name);
    const auto mainSequence = reader.takeObject("mainSequence");
    if (mainSequence.isMissing())
        return {};

    KindTable kinds;
    kinds.read(reader.takeObject("stepKinds"), report);
    BlockPlaces places;
    BlockReader blocks(kinds, places, report);
    SequenceContent main;
    readSequence(main, mainSequence, blocks, report, {"mainSequence", where});
    info.mainSequence = infoOf(main, info.blocks);
    const auto sequences = reader.takeArray("subSequences");
    const DocumentPlace allSequences("subSequences", where);
    DocumentPlace place(0, allSequences);
    for (auto item = sequences.first(); !item.isMissing(); item = item.nextIn(sequences)) {
        SequenceContent content;
        readSequence(content, item, blocks, report, place);
        info.subSequences.push_back(infoOf(content, info.subBlocks));
        place.setIndex(place.index() + 1);
    }
    info.sequenceVariables =
        readRecords(reader, "sequenceVariables", report, where, SequenceVariable);
    info.processVariables = readRecords(reader, "processVariables", report, where, ProcessVariable);
    const auto templates = reader.takeArray("subTemplates");
    const DocumentPlace allTemplates("subTemplates", where);
    DocumentPlace subPlace(0, allTemplates);
    for (auto item = templates.first(); !item.isMissing(); item = item.nextIn(templates)) {
        if (depth == MaxNesting) {
            report.add(subPlace, QStringLiteral("嵌套过深，已舍弃"));
            break;
        }
        auto sub = readNested(item, report, subPlace, depth + 1);
        if (!sub.id.empty())
            info.subTemplates[sub.id] = std::move(sub);
        subPlace.setIndex(subPlace.index() + 1);
    }
    return info;
}

} // namespace

std::string writeTemplate(const processTemplateInfo& info)
{
    KindTable kinds;
    BlockWriter writer(kinds);
    std::string mainSequence;
    writeSequence(mainSequence, contentOf(info.mainSequence, byUuid(info.blocks)), writer);
    const auto subBlocks = byUuid(info.subBlocks);
    std::string sequences = "[";
    for (const auto& sequence : info.subSequences) {
        sequences += sequences.size() > 1 ? "," : "";
        writeSequence(sequences, contentOf(sequence, subBlocks), writer);
    }
    std::string templates = "[";
    for (const auto& entry : info.subTemplates) {
        templates += templates.size() > 1 ? "," : "";
        templates += writeTemplate(entry.second);
    }
    FieldWriter fields;
    fields.field("id", info.id);
    fields.field("name", info.name);
    fields.insert("mainSequence", [&](std::string& out) { out += mainSequence; });
    fields.insert("subSequences", [&](std::string& out) { out += sequences + ']'; });
    fields.insert("sequenceVariables", [&](std::string& out) {
        writeVariables(out, info.sequenceVariables, SequenceVariable);
    });
    fields.insert("processVariables", [&](std::string& out) {
        writeVariables(out, info.processVariables, ProcessVariable);
    });
    fields.insert("subTemplates", [&](std::string& out) { out += templates + ']'; });
    fields.insert("stepKinds", [&](std::string& out) { kinds.write(out); });
    std::string json;
    fields.finish(json);
    return json;
}

processTemplateInfo readTemplate(const JsonValue& object, LoadReport& report,
                                 const DocumentPlace& where)
{
    return readNested(object, report, where, 0);
}

} // namespace standalone
