#include "standalone/model_service/BlockReader.h"

#include "standalone/model_service/FieldReader.h"
#include "standalone/model_service/StepTables.h"
#include "standalone/model_service/StoredBlock.h"
#include "standalone/model_service/block_factory.h"
#include "standalone/model_service/block_fields.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/property_json.h"

namespace standalone {

BlockReader::BlockReader(const KindTable& kinds, LoadReport& report)
    : m_kinds(kinds), m_report(report)
{
}

BlockReader::Blocks BlockReader::read(const QJsonArray& array, const QString& where)
{
    Blocks blocks;
    readInto(blocks, array, where, 1);
    return blocks;
}

void BlockReader::readInto(Blocks& blocks, const QJsonArray& array, const QString& where, int depth)
{
    int index = -1;
    for (const auto& item : array) {
        const QString place = QStringLiteral("%1[%2]").arg(where).arg(++index);
        if (!item.isObject()) {
            m_report.add(place, QStringLiteral("步骤不是对象，已忽略"));
            continue;
        }
        QJsonArray children;
        const auto block = readBlock(item.toObject(), place, children);
        blocks.push_back(block);
        if (children.isEmpty())
            continue;
        if (depth < MaxDepth) {
            readInto(block->children, children, place, depth + 1);
        } else {
            m_report.add(place, QStringLiteral("嵌套过深，子步骤移到该步骤之后"));
            readInto(blocks, children, place, depth);
        }
    }
}

std::shared_ptr<IProcessBlock> BlockReader::readBlock(const QJsonObject& object,
                                                      const QString& where, QJsonArray& children)
{
    FieldReader reader(object, m_report, where);
    reader.takeArray("children", children);
    int baseType = BasicStep;
    int stepType = step_type::None;
    reader.field("baseType", baseType, BasicStep);
    reader.field("stepType", stepType, step_type::None);
    auto block = makeBlock(static_cast<logicBlockType>(baseType), stepType);
    const bool isKnown = block != nullptr;
    if (!isKnown) {
        m_report.add(where,
                     QStringLiteral("未知的步骤类型 %1/%2，原样保留").arg(baseType).arg(stepType));
        block = makePlaceholder(baseType == BasicStep ? stepType : step_type::Custom);
    }
    block_fields::visitIdentity(reader, *block);
    block_fields::visitGeneral(reader, *block);
    if (isKnown)
        block_fields::visitOwn(reader, *block);

    QJsonObject property;
    QJsonObject propertyRest;
    if (reader.takeObject("property", property))
        block->property = readProperty(property, m_report, where, &propertyRest);
    else if (const auto* known = m_kinds.find(baseType, stepType))
        block->property = *known;
    else
        block->property = stepTables().propertyFor(block->baseType(), block->stepType());

    QJsonObject kept = isKnown ? reader.rest() : object;
    if (isKnown && !propertyRest.isEmpty())
        kept.insert(QLatin1String("property"), propertyRest);
    if (!isKnown) {
        kept.remove(QLatin1String("children"));
        if (!kept.contains(QLatin1String("stepType")))
            kept.insert(QLatin1String("stepType"), step_type::None);
    }
    dynamic_cast<StoredMembers&>(*block).kept = kept;
    giveUuid(*block, where);
    return block;
}

void BlockReader::giveUuid(IProcessBlock& block, const QString& where)
{
    if (isBlockUuid(block.uuid) && m_uuids.insert(block.uuid).second)
        return;
    const bool isMissing = block.uuid.empty();
    const QString former = toText(block.uuid);
    block.uuid = newUuid();
    m_uuids.insert(block.uuid);
    m_report.add(where, (isMissing ? QStringLiteral("缺少uuid，新的uuid为%1")
                                   : QStringLiteral("uuid无效或重复，新的uuid为%1，原为%2"))
                            .arg(toText(block.uuid), former));
}

} // namespace standalone
