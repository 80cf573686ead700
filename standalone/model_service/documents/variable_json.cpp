#include "standalone/model_service/documents/variable_json.h"

#include "standalone/model_service/json/FieldReader.h"
#include "standalone/model_service/json/FieldWriter.h"

namespace standalone {

namespace {

template <class Archive, class Variable>
void visitVariable(Archive& ar, Variable& v, processVariableType scopeHere,
                   const std::string& ownerHere)
{
    int scope = v.scope;
    ar.field("uuid", v.uuid);
    ar.field("name", v.name);
    ar.field("type", v.type);
    ar.field("value", v.value);
    ar.field("description", v.description);
    ar.field("ownerId", v.ownerId, ownerHere);
    ar.field("scope", scope, scopeHere);
    ar.field("isLocked", v.isLocked, false);
    ar.field("isEditable", v.isEditable, true);
    ar.field("length", v.length, 1);
    if constexpr (Archive::Reads)
        v.scope = static_cast<processVariableType>(scope);
}

} // namespace

void writeVariable(std::string& json, const StoredVariable& stored, processVariableType scope,
                   const std::string& ownerId)
{
    FieldWriter writer(stored.kept);
    visitVariable(writer, stored.variable, scope, ownerId);
    writer.finish(json);
}

std::vector<StoredVariable> readVariables(const JsonValue& array, LoadReport& report,
                                          const DocumentPlace& where, processVariableType scope,
                                          const std::string& ownerId)
{
    std::vector<StoredVariable> variables;
    DocumentPlace place(0, where);
    for (auto item = array.first(); !item.isMissing(); item = item.nextIn(array)) {
        if (item.isObject()) {
            FieldReader reader(item, report, place);
            auto& stored = variables.emplace_back();
            visitVariable(reader, stored.variable, scope, ownerId);
            stored.kept = reader.rest();
        } else {
            report.add(place, QStringLiteral("变量不是对象，已忽略"));
        }
        place.setIndex(place.index() + 1);
    }
    return variables;
}

} // namespace standalone
