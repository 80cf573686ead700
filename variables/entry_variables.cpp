#include "variables/entry_variables.h"

#include "model/services/system_variate.h"

#include <algorithm>

namespace entry_variables {

namespace {

constexpr int UsersKind = 1;

bool isBasic(DrelVarType type)
{
    return std::any_of(dataCategoryVarTypes.begin(), dataCategoryVarTypes.end(),
                       [type](const auto& row) { return row.second == type; });
}

} // namespace

bool isOffered(const QString& keyword, const Wanted& wanted)
{
    if (wanted.basicTypesOnly && !isBasic(varTypeFromKeyword(keyword.toStdString())))
        return false;
    return wanted.type.isEmpty() || wanted.type == QLatin1String("void*") || wanted.type == keyword;
}

QVector<EntryVariable> offered(const std::vector<processVariable>& variables, const Wanted& wanted)
{
    QVector<EntryVariable> result;
    for (const processVariable& variable : variables) {
        const QString type = QString::fromStdString(variable.type);
        if (isOffered(type, wanted))
            result.append({QString::fromStdString(variable.name), type,
                           QString::fromStdString(variable.description)});
    }
    return result;
}

QVector<EntryVariable> offeredSystemVariables(const QString& type)
{
    QVector<EntryVariable> result;
    QVector<QString> names;
    if (!system_variate::GetVariateNameSet(names))
        return result;
    for (const QString& name : qAsConst(names)) {
        system_variate::SystemVarInfo variable;
        if (system_variate::GetVariate(name, variable) != VarOk || variable.kind != UsersKind)
            continue;
        const QString keyword = systemTypeKeyword(variable.category);
        if (!keyword.isEmpty() && (type.isEmpty() || type == keyword))
            result.append({name, keyword, variable.description});
    }
    return result;
}

QString systemTypeKeyword(DataCategoryType category)
{
    return QString::fromStdString(varTypeKeyword(varTypeFromDataCategory(category)));
}

QString prefixedName(const QString& name, Origin origin)
{
    return (origin == LocalOrigin ? QLatin1String("[local]") : QLatin1String("[sys]")) + name;
}

QStringList prefixedNames(const QVector<EntryVariable>& variables, Origin origin)
{
    QStringList names;
    names.reserve(variables.size());
    for (const EntryVariable& variable : variables)
        names.append(prefixedName(variable.name, origin));
    return names;
}

} // namespace entry_variables
