#include "standalone/model_service/documents/BlockWriter.h"

#include "model/fields/block_fields.h"
#include "standalone/model_service/documents/StoredBlock.h"
#include "standalone/model_service/json/FieldWriter.h"

namespace standalone {

void BlockWriter::write(std::string& json,
                        const std::vector<std::shared_ptr<IProcessBlock>>& blocks)
{
    json += '[';
    for (const auto& block : blocks) {
        if (block != blocks.front())
            json += ',';
        write(json, *block);
    }
    json += ']';
}

void BlockWriter::write(std::string& json, const IProcessBlock& block)
{
    static const std::string nothing;
    const auto* stored = dynamic_cast<const StoredMembers*>(&block);
    FieldWriter writer(stored ? stored->kept : nothing);
    block_fields::visitIdentity(writer, block);
    block_fields::visitGeneral(writer, block);
    block_fields::visitOwn<StoredCast>(writer, block);

    // A placeholder's kind and property stand among the members that it kept.
    const int stepType = block.stepType();
    if (!writer.keeps("stepType")) {
        writer.field("baseType", static_cast<int>(block.baseType()), BasicStep);
        writer.always("stepType", stepType);
        const auto rest = writer.keptText("property");
        if (!m_kinds.covers(block.baseType(), stepType, block.property) || !rest.empty())
            writer.insert("property", [&block, rest](std::string& out) {
                writeProperty(out, block.property, rest);
            });
    }
    if (!block.children.empty())
        writer.insert("children", [&](std::string& out) { write(out, block.children); });
    writer.finish(json);
}

} // namespace standalone
