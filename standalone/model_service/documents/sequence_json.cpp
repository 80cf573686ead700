#include "standalone/model_service/documents/sequence_json.h"

#include "model/IProcessBlock.h"
#include "standalone/model_service/documents/BlockReader.h"
#include "standalone/model_service/documents/BlockWriter.h"
#include "standalone/model_service/json/FieldReader.h"
#include "standalone/model_service/json/FieldWriter.h"

namespace standalone {

namespace {

constexpr const char* flowNames[] = {"initialFlow", "mainFlow", "endFlow"};

template <class Archive, class Info> void visitHead(Archive& ar, Info& info)
{
    ar.field("id", info.id);
    ar.field("name", info.name);
    ar.field("comment", info.comment);
    ar.field("isMain", info.isMain, false);
    ar.field("reserved", info.reserved, 0u);
}

std::vector<std::string> uuidsOf(const SequenceContent::Blocks& blocks)
{
    std::vector<std::string> uuids;
    uuids.reserve(blocks.size());
    for (const auto& block : blocks)
        uuids.push_back(block->uuid);
    return uuids;
}

} // namespace

SequenceInfo SequenceContent::record() const
{
    SequenceInfo info;
    info.id = head.id;
    info.name = head.name;
    info.comment = head.comment;
    info.isMain = head.isMain;
    info.reserved = head.reserved;
    info.initialFlow = uuidsOf(flows[InitialFlow]);
    info.mainFlow = uuidsOf(flows[MainFlow]);
    info.endFlow = uuidsOf(flows[EndFlow]);
    return info;
}

void writeSequence(std::string& json, const SequenceContent& sequence, BlockWriter& writer)
{
    FieldWriter fields(sequence.kept);
    visitHead(fields, sequence.head);
    for (int flow = InitialFlow; flow <= EndFlow; ++flow) {
        const auto& blocks = sequence.flows[static_cast<std::size_t>(flow)];
        if (!blocks.empty() || !fields.keeps(flowNames[flow]))
            fields.insert(flowNames[flow], [&](std::string& out) { writer.write(out, blocks); });
    }
    fields.finish(json);
}

void readSequence(SequenceContent& sequence, const JsonValue& object, BlockReader& reader,
                  LoadReport& report, const DocumentPlace& where)
{
    FieldReader fields(object, report, where);
    visitHead(fields, sequence.head);
    for (int flow = InitialFlow; flow <= EndFlow; ++flow) {
        const DocumentPlace place(flowNames[flow], where);
        sequence.flows[static_cast<std::size_t>(flow)] = reader.read(
            fields.takeArray(flowNames[flow]), place, {nullptr, nullptr, &sequence, flow});
    }
    sequence.kept = fields.rest();
}

} // namespace standalone
