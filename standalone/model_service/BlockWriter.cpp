#include "standalone/model_service/BlockWriter.h"

#include "standalone/model_service/FieldWriter.h"
#include "standalone/model_service/StoredBlock.h"
#include "standalone/model_service/block_fields.h"

namespace standalone {

QJsonArray BlockWriter::write(const std::vector<std::shared_ptr<IProcessBlock>>& blocks)
{
    QJsonArray array;
    for (const auto& block : blocks)
        array.append(write(*block));
    return array;
}

QJsonObject BlockWriter::write(const IProcessBlock& block)
{
    const auto* stored = dynamic_cast<const StoredMembers*>(&block);
    const QJsonObject kept = stored ? stored->kept : QJsonObject();
    FieldWriter writer(kept);
    block_fields::visitIdentity(writer, block);
    block_fields::visitGeneral(writer, block);
    block_fields::visitOwn(writer, block);

    // A placeholder's kind and property stand among the members that it kept.
    if (!kept.contains(QLatin1String("stepType"))) {
        writer.field("baseType", static_cast<int>(block.baseType()), BasicStep);
        writer.insert("stepType", block.stepType());
        const auto rest = kept.value(QLatin1String("property"));
        if (!m_kinds.covers(block.baseType(), block.stepType(), block.property) || rest.isObject())
            writer.insert("property", writeProperty(block.property, rest.toObject()));
    }
    if (!block.children.empty())
        writer.insert("children", write(block.children));
    return writer.object();
}

} // namespace standalone
