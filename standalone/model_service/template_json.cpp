#include "standalone/model_service/template_json.h"

#include "model/IProcessBlock.h"
#include "standalone/model_service/BlockReader.h"
#include "standalone/model_service/BlockWriter.h"
#include "standalone/model_service/FieldReader.h"
#include "standalone/model_service/FieldWriter.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/sequence_json.h"
#include "standalone/model_service/variable_json.h"

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

QJsonArray writeVariables(const std::vector<processVariable>& variables, processVariableType scope)
{
    QJsonArray array;
    for (const auto& variable : variables)
        array.append(writeVariable({variable, {}}, scope, {}));
    return array;
}

std::vector<processVariable> readRecords(FieldReader& reader, const char* name, LoadReport& report,
                                         processVariableType scope)
{
    QJsonArray array;
    reader.takeArray(name, array);
    std::vector<processVariable> variables;
    for (const auto& stored : readVariables(array, report, QLatin1String(name), scope, {}))
        variables.push_back(stored.variable);
    return variables;
}

} // namespace

QJsonObject writeTemplate(const processTemplateInfo& info)
{
    KindTable kinds;
    BlockWriter writer(kinds);
    FieldWriter fields;
    fields.field("id", info.id);
    fields.field("name", info.name);
    fields.insert("mainSequence",
                  writeSequence(contentOf(info.mainSequence, byUuid(info.blocks)), writer));
    const auto subBlocks = byUuid(info.subBlocks);
    QJsonArray sequences;
    for (const auto& sequence : info.subSequences)
        sequences.append(writeSequence(contentOf(sequence, subBlocks), writer));
    fields.insert("subSequences", sequences);
    fields.insert("sequenceVariables", writeVariables(info.sequenceVariables, SequenceVariable));
    fields.insert("processVariables", writeVariables(info.processVariables, ProcessVariable));
    QJsonArray templates;
    for (const auto& entry : info.subTemplates)
        templates.append(writeTemplate(entry.second));
    fields.insert("subTemplates", templates);
    fields.insert("stepKinds", kinds.write());
    return fields.object();
}

processTemplateInfo readTemplate(const QJsonObject& object, LoadReport& report,
                                 const QString& where)
{
    processTemplateInfo info;
    FieldReader reader(object, report, where);
    reader.field("id", info.id);
    reader.field("name", info.name);
    QJsonObject mainSequence;
    if (!reader.takeObject("mainSequence", mainSequence))
        return {};

    QJsonObject kindRecords;
    reader.takeObject("stepKinds", kindRecords);
    KindTable kinds;
    kinds.read(kindRecords, report);
    BlockReader blocks(kinds, report);
    info.mainSequence = infoOf(readSequence(mainSequence, blocks, report, where), info.blocks);
    QJsonArray sequences;
    reader.takeArray("subSequences", sequences);
    for (const auto& sequence : qAsConst(sequences)) {
        const auto content = readSequence(sequence.toObject(), blocks, report, where);
        info.subSequences.push_back(infoOf(content, info.subBlocks));
    }
    info.sequenceVariables = readRecords(reader, "sequenceVariables", report, SequenceVariable);
    info.processVariables = readRecords(reader, "processVariables", report, ProcessVariable);
    QJsonArray templates;
    reader.takeArray("subTemplates", templates);
    for (const auto& item : qAsConst(templates)) {
        const auto sub = readTemplate(item.toObject(), report, where);
        if (!sub.id.empty())
            info.subTemplates[sub.id] = sub;
    }
    return info;
}

} // namespace standalone
