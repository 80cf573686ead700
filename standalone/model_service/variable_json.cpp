#include "standalone/model_service/variable_json.h"

#include "standalone/model_service/FieldReader.h"
#include "standalone/model_service/FieldWriter.h"

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
    ar.field("ownerId", v.ownerId, ownerHere.c_str());
    ar.field("scope", scope, scopeHere);
    ar.field("isLocked", v.isLocked, false);
    ar.field("isEditable", v.isEditable, true);
    ar.field("length", v.length, 1);
    if constexpr (Archive::Reads)
        v.scope = static_cast<processVariableType>(scope);
}

} // namespace

QJsonObject writeVariable(const StoredVariable& stored, processVariableType scope,
                          const std::string& ownerId)
{
    FieldWriter writer(stored.kept);
    visitVariable(writer, stored.variable, scope, ownerId);
    return writer.object();
}

StoredVariable readVariable(const QJsonObject& object, LoadReport& report, const QString& where,
                            processVariableType scope, const std::string& ownerId)
{
    StoredVariable stored;
    FieldReader reader(object, report, where);
    visitVariable(reader, stored.variable, scope, ownerId);
    stored.kept = reader.rest();
    return stored;
}

std::vector<StoredVariable> readVariables(const QJsonArray& array, LoadReport& report,
                                          const QString& where, processVariableType scope,
                                          const std::string& ownerId)
{
    std::vector<StoredVariable> variables;
    int index = -1;
    for (const auto& item : array) {
        const QString place = QStringLiteral("%1[%2]").arg(where).arg(++index);
        if (item.isObject())
            variables.push_back(readVariable(item.toObject(), report, place, scope, ownerId));
        else
            report.add(place, QStringLiteral("变量不是对象，已忽略"));
    }
    return variables;
}

} // namespace standalone
