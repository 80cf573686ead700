#include "standalone/model_service/documents/property_json.h"

#include "model/IProcessBlock.h"
#include "standalone/model_service/documents/block_factory.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/json/FieldReader.h"
#include "standalone/model_service/json/FieldWriter.h"
#include "standalone/model_service/json/json_write.h"

#include <algorithm>
#include <list>
#include <tuple>

namespace standalone {

namespace {

/// Deeper nesting stays among the members that are kept unread.
constexpr int MaxNesting = 32;

template <class Archive, class Property> void visitProperty(Archive& ar, Property& p, int depth)
{
    int baseType = p.baseType;
    ar.field("name", p.name);
    ar.field("baseType", baseType, BasicStep);
    ar.field("stepType", p.stepType, 0);
    ar.field("showInPalette", p.showInPalette, true);
    ar.field("reserved1", p.reserved1, false);
    ar.field("hasChildren", p.hasChildren, false);
    ar.field("editable", p.editable, false);
    ar.field("draggable", p.draggable, false);
    ar.field("reserved2", p.reserved2, false);
    ar.field("nameEditable", p.nameEditable, false);
    ar.field("tagEnabled", p.tagEnabled, false);
    ar.field("loopEnabled", p.loopEnabled, false);
    ar.field("preConditionEnabled", p.preConditionEnabled, false);
    ar.field("postActionEnabled", p.postActionEnabled, false);
    ar.field("statementsEnabled", p.statementsEnabled, false);
    ar.field("reserved3", p.reserved3, true);
    ar.map("extra", p.extra);
    if (depth < MaxNesting)
        ar.list("children", p.children,
                [depth](auto& element, auto& child) { visitProperty(element, child, depth + 1); });
    if constexpr (Archive::Reads)
        p.baseType = static_cast<logicBlockType>(baseType);
}

auto valuesOf(const BaseStepProperty& p)
{
    return std::tie(p.name, p.baseType, p.stepType, p.showInPalette, p.reserved1, p.hasChildren,
                    p.editable, p.draggable, p.reserved2, p.nameEditable, p.tagEnabled,
                    p.loopEnabled, p.preConditionEnabled, p.postActionEnabled, p.statementsEnabled,
                    p.reserved3, p.extra);
}

std::uint64_t numberOf(int baseType, int stepType)
{
    return std::uint64_t(std::uint32_t(baseType)) << 32 | std::uint32_t(stepType);
}

std::string nameOf(int baseType, int stepType)
{
    return std::to_string(baseType) + '/' + std::to_string(stepType);
}

/// The kind that a record of the document is for; false for a name that tells none.
bool kindOf(const std::string& name, int& baseType, int& stepType)
{
    const QString text = toText(name);
    baseType = text.section(QLatin1Char('/'), 0, 0).toInt();
    stepType = text.section(QLatin1Char('/'), 1).toInt();
    return nameOf(baseType, stepType) == name;
}

/// Not a kind of this version: its record is written again as it was read.
bool isForeign(const std::string& name)
{
    int baseType = 0;
    int stepType = 0;
    return !kindOf(name, baseType, stepType) ||
           !makeBlock(static_cast<logicBlockType>(baseType), stepType);
}

} // namespace

void writeProperty(std::string& json, const BaseStepProperty& property, const std::string& kept)
{
    FieldWriter writer(kept);
    visitProperty(writer, property, 0);
    writer.finish(json);
}

BaseStepProperty readProperty(const JsonValue& object, LoadReport& report,
                              const DocumentPlace& where, std::string* kept)
{
    BaseStepProperty property;
    FieldReader reader(object, report, where);
    visitProperty(reader, property, 0);
    if (kept)
        *kept = reader.rest();
    return property;
}

std::vector<BaseStepProperty> readProperties(const JsonValue& array, LoadReport& report,
                                             const DocumentPlace& where)
{
    std::vector<BaseStepProperty> properties;
    DocumentPlace place(0, where);
    for (auto item = array.first(); !item.isMissing(); item = item.nextIn(array)) {
        if (item.isObject())
            properties.push_back(readProperty(item, report, place));
        else
            report.add(place, QStringLiteral("步骤类型不是对象"));
        place.setIndex(place.index() + 1);
    }
    return properties;
}

bool isSameProperty(const BaseStepProperty& a, const BaseStepProperty& b)
{
    return valuesOf(a) == valuesOf(b) &&
           std::equal(a.children.begin(), a.children.end(), b.children.begin(), b.children.end(),
                      isSameProperty);
}

KindTable::KindTable(const Rests& rests) : m_rests(rests)
{
    for (const auto& [name, json] : m_rests) {
        if (isForeign(name) || json.front() != '{')
            m_foreign.emplace(name, json);
    }
}

void KindTable::read(const JsonValue& object, LoadReport& report)
{
    const DocumentPlace whole;
    const DocumentPlace table("stepKinds", whole);
    for (auto key = object.first(); !key.isMissing(); key = key.valueOfName().nextIn(object)) {
        const auto name = key.text();
        const auto value = key.valueOfName();
        const DocumentPlace where(name, table);
        if (!value.isObject())
            report.add(where, QStringLiteral("成员类型错误"));
        std::string rest;
        int baseType = 0;
        int stepType = 0;
        if (value.isObject() && kindOf(name, baseType, stepType))
            m_records[numberOf(baseType, stepType)] = readProperty(value, report, where, &rest);
        if (!value.isObject() || isForeign(name)) {
            rest.clear();
            if (!appendJsonValue(rest, value))
                report.add(where, QStringLiteral("嵌套过深或数字超出范围，已舍弃"));
        }
        if (!rest.empty())
            m_rests[name] = rest;
    }
}

const BaseStepProperty* KindTable::find(int baseType, int stepType) const
{
    const auto found = m_records.find(numberOf(baseType, stepType));
    return found == m_records.end() ? nullptr : &found->second;
}

bool KindTable::covers(int baseType, int stepType, const BaseStepProperty& property)
{
    const auto [record, isNew] = m_records.try_emplace(numberOf(baseType, stepType), property);
    return isNew || isSameProperty(record->second, property);
}

void KindTable::write(std::string& json) const
{
    FieldWriter table;
    auto foreign = m_foreign;
    std::list<std::string> names;
    for (const auto& [number, property] : m_records) {
        const auto& name = names.emplace_back(
            nameOf(static_cast<int>(number >> 32), static_cast<int>(number & 0xFFFFFFFFu)));
        const auto rest = m_rests.find(name);
        const bool isKept = rest != m_rests.end() && foreign.erase(name) == 0;
        const auto kept = isKept ? rest->second : std::string();
        table.insert(name, [&record = property, kept](std::string& out) {
            writeProperty(out, record, kept);
        });
    }
    for (const auto& [name, record] : foreign)
        table.insert(name, [&text = record](std::string& out) { out += text; });
    table.finish(json);
}

} // namespace standalone
