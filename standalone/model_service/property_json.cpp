#include "standalone/model_service/property_json.h"

#include "model/IProcessBlock.h"
#include "standalone/model_service/FieldReader.h"
#include "standalone/model_service/FieldWriter.h"
#include "standalone/model_service/block_factory.h"
#include "standalone/model_service/identifiers.h"

#include <algorithm>
#include <tuple>

namespace standalone {

namespace {

template <class Archive, class Property> void visitProperty(Archive& ar, Property& p)
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

std::string kindKey(int baseType, int stepType)
{
    return std::to_string(baseType) + '/' + std::to_string(stepType);
}

/// A kind of a newer version: its record is written again as it was read.
bool isForeign(const QString& key)
{
    const auto baseType = static_cast<logicBlockType>(key.section(QLatin1Char('/'), 0, 0).toInt());
    return !makeBlock(baseType, key.section(QLatin1Char('/'), 1).toInt());
}

} // namespace

QJsonObject writeProperty(const BaseStepProperty& property, const QJsonObject& kept)
{
    FieldWriter writer(kept);
    visitProperty(writer, property);
    if (!property.extra.empty()) {
        QJsonObject extra;
        for (const auto& [key, value] : property.extra)
            extra.insert(toText(key), toText(value));
        writer.insert("extra", extra);
    }
    if (!property.children.empty()) {
        QJsonArray children;
        for (const auto& child : property.children)
            children.append(writeProperty(child));
        writer.insert("children", children);
    }
    return writer.object();
}

BaseStepProperty readProperty(const QJsonObject& object, LoadReport& report, const QString& where,
                              QJsonObject* kept)
{
    BaseStepProperty property;
    FieldReader reader(object, report, where);
    visitProperty(reader, property);
    QJsonObject extra;
    if (reader.takeObject("extra", extra)) {
        for (auto it = extra.constBegin(); it != extra.constEnd(); ++it) {
            if (!it.value().isString())
                report.add(where + QLatin1String(".extra.") + it.key(),
                           QStringLiteral("成员类型错误"));
            property.extra[toUtf8(it.key())] = toUtf8(it.value().toString());
        }
    }
    QJsonArray children;
    if (reader.takeArray("children", children))
        property.children = readProperties(children, report, where);
    if (kept)
        *kept = reader.rest();
    return property;
}

std::vector<BaseStepProperty> readProperties(const QJsonArray& array, LoadReport& report,
                                             const QString& where)
{
    std::vector<BaseStepProperty> properties;
    for (const auto& item : array) {
        if (item.isObject())
            properties.push_back(readProperty(item.toObject(), report, where));
        else
            report.add(where, QStringLiteral("步骤类型不是对象"));
    }
    return properties;
}

bool isSameProperty(const BaseStepProperty& a, const BaseStepProperty& b)
{
    return valuesOf(a) == valuesOf(b) &&
           std::equal(a.children.begin(), a.children.end(), b.children.begin(), b.children.end(),
                      isSameProperty);
}

KindTable::KindTable(const QJsonObject& rests) : m_rests(rests) {}

void KindTable::read(const QJsonObject& object, LoadReport& report)
{
    for (auto it = object.begin(); it != object.end(); ++it) {
        const QString where = QLatin1String("stepKinds.") + it.key();
        if (!it.value().isObject()) {
            report.add(where, QStringLiteral("成员类型错误"));
            continue;
        }
        QJsonObject rest;
        m_records[toUtf8(it.key())] = readProperty(it.value().toObject(), report, where, &rest);
        if (isForeign(it.key()))
            m_rests.insert(it.key(), it.value());
        else if (!rest.isEmpty())
            m_rests.insert(it.key(), rest);
    }
}

const BaseStepProperty* KindTable::find(int baseType, int stepType) const
{
    const auto found = m_records.find(kindKey(baseType, stepType));
    return found == m_records.end() ? nullptr : &found->second;
}

bool KindTable::covers(int baseType, int stepType, const BaseStepProperty& property)
{
    const auto [record, isNew] = m_records.try_emplace(kindKey(baseType, stepType), property);
    return isNew || isSameProperty(record->second, property);
}

QJsonObject KindTable::write() const
{
    QJsonObject object;
    for (auto it = m_rests.begin(); it != m_rests.end(); ++it) {
        if (isForeign(it.key()))
            object.insert(it.key(), it.value());
    }
    for (const auto& [key, property] : m_records) {
        const QString name = toText(key);
        object.insert(name, writeProperty(property, m_rests.value(name).toObject()));
    }
    return object;
}

} // namespace standalone
