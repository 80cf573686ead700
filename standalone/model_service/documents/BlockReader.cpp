#include "standalone/model_service/documents/BlockReader.h"

#include "model/fields/block_fields.h"
#include "standalone/model_service/documents/StepTables.h"
#include "standalone/model_service/documents/StoredBlock.h"
#include "standalone/model_service/documents/block_factory.h"
#include "standalone/model_service/documents/property_json.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/json/FieldReader.h"

#include <list>

namespace standalone {

namespace {

/// A step of a kind that this version doesn't know is shown and can be moved; what it says stays as
/// it is.
BaseStepProperty foreignProperty(int stepType, const BaseStepProperty* told)
{
    BaseStepProperty property;
    property.stepType = stepType;
    property.showInPalette = false;
    if (told) {
        property.name = told->name;
        property.hasChildren = told->hasChildren;
    }
    return property;
}

} // namespace

BlockReader::BlockReader(const KindTable& kinds, BlockPlaces& places, LoadReport& report)
    : m_kinds(kinds), m_places(places), m_report(report)
{
}

BlockReader::Blocks BlockReader::read(const JsonValue& array, const DocumentPlace& where,
                                      const BlockPlace& top)
{
    // Documents may be nested as deep as they like, so the walk keeps its own stack.
    struct Level
    {
        Level(const JsonValue& list, Blocks* blocks, IProcessBlock* above, int levels,
              const DocumentPlace& owner)
            : array(list), next(list.first()), target(blocks), parent(above), depth(levels),
              children("children", owner), item(-1, levels > 1 ? children : owner)
        {
            if (target->empty())
                target->reserve(array.count());
        }
        JsonValue array;
        JsonValue next;
        Blocks* target;
        IProcessBlock* parent;
        int depth;
        DocumentPlace children;
        DocumentPlace item;
    };
    Blocks blocks;
    std::list<Level> levels; // places point to one another
    levels.emplace_back(array, &blocks, top.parent, 1, where);
    while (!levels.empty()) {
        auto& level = levels.back();
        const auto item = level.next;
        if (item.isMissing()) {
            levels.pop_back();
            continue;
        }
        level.next = item.nextIn(level.array);
        level.item.setIndex(level.item.index() + 1);
        if (!item.isObject()) {
            m_report.add(level.item, QStringLiteral("步骤不是对象，已忽略"));
            continue;
        }
        JsonValue children;
        const auto& block = level.target->emplace_back(readBlock(item, level.item, children));
        const int index = static_cast<int>(level.target->size()) - 1;
        enter({block, level.parent, top.sequence, top.flow, index}, level.item);
        if (children.first().isMissing())
            continue;
        const bool isDeep = level.depth >= MaxDepth;
        if (isDeep)
            m_report.add(level.item, QStringLiteral("嵌套过深，子步骤移到该步骤之后"));
        levels.emplace_back(children, isDeep ? level.target : &block->children,
                            isDeep ? level.parent : block.get(),
                            isDeep ? level.depth : level.depth + 1, level.item);
    }
    return blocks;
}

std::shared_ptr<IProcessBlock>
BlockReader::readBlock(const JsonValue& object, const DocumentPlace& where, JsonValue& children)
{
    FieldReader reader(object, m_report, where);
    children = reader.takeArray("children");
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
        reader.keepAllBut("children");
    }
    block_fields::visitIdentity(reader, *block);
    block_fields::visitGeneral(reader, *block);
    if (isKnown) {
        block_fields::visitOwn<StoredCast>(reader, *block);
        readProperty(*block, reader, where);
    } else {
        block->property = foreignProperty(block->stepType(), m_kinds.find(baseType, stepType));
    }
    if (auto rest = reader.rest(); !rest.empty())
        dynamic_cast<StoredMembers&>(*block).kept = std::move(rest);
    return block;
}

void BlockReader::readProperty(IProcessBlock& block, FieldReader& reader,
                               const DocumentPlace& where) const
{
    const auto record = reader.takeObject("property");
    if (record.isMissing()) {
        if (const auto* known = m_kinds.find(block.baseType(), block.stepType()))
            block.property = *known;
        else
            block.property = stepTables().propertyFor(block.baseType(), block.stepType());
        return;
    }
    std::string rest;
    block.property = standalone::readProperty(record, m_report, {"property", where}, &rest);
    if (!rest.empty())
        reader.keep("property", rest);
}

void BlockReader::enter(const BlockPlace& place, const DocumentPlace& where)
{
    auto& block = *place.block;
    if (isBlockUuid(block.uuid) && m_places.insert(place))
        return;
    const bool isMissing = block.uuid.empty();
    const QString former = LoadReport::shown(block.uuid);
    block.uuid = newUuid();
    m_places.insert(place);
    const QString fault =
        isMissing ? QStringLiteral("缺少uuid") : QStringLiteral("uuid无效或重复(%1)").arg(former);
    m_report.add(where, fault + QStringLiteral("，新的uuid为") + toText(block.uuid));
}

} // namespace standalone
