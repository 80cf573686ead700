#include "variables/entry_functions.h"

#include "model/type_tables.h"

#include <QCoreApplication>
#include <QStringList>

#include <iterator>

namespace entry_functions {

namespace {

constexpr int HiddenKind = 3;

/// A field that fills its place whole has no terminating zero.
template <std::size_t Size> QString fieldText(const char (&field)[Size])
{
    return QString::fromUtf8(field, int(qstrnlen(field, Size)));
}

QString keyword(std::int32_t type)
{
    return QString::fromStdString(varTypeKeyword(DrelVarType(type)));
}

QString orNone(const QString& text)
{
    return text.isEmpty() ? QCoreApplication::translate("wgtEntryValue", "无") : text;
}

template <typename Visit> void forEachParameter(const _DrelFunction& function, Visit visit)
{
    for (const auto& parameter : function.params) {
        if (parameter.name[0] == '\0')
            return;
        visit(parameter);
    }
}

} // namespace

Row row(const _DrelFunction& function)
{
    Row row;
    QStringList parameters;
    QStringList tips;
    forEachParameter(function, [&](const _DrelFunction::Parameter& parameter) {
        const QString type = keyword(parameter.type);
        const QString name = fieldText(parameter.name);
        parameters.append(QStringLiteral("%1 %2").arg(type, name));
        tips.append(QStringLiteral("%1 %2: %3").arg(type, name, fieldText(parameter.description)));
        if (isCompositeVarType(DrelVarType(parameter.type)))
            row.canBePicked = false;
    });
    row.texts[ReturnColumn] = keyword(function.returnType);
    row.texts[PrefixColumn] = orNone(fieldText(function.prefix));
    row.texts[NameColumn] = name(function);
    row.texts[ParametersColumn] = orNone(parameters.join(QLatin1String(", ")));
    row.texts[DescriptionColumn] = orNone(fieldText(function.description));
    row.parametersTip = orNone(tips.join(QLatin1Char('\n')));
    return row;
}

QString name(const _DrelFunction& function)
{
    return fieldText(function.name);
}

QString callText(const _DrelFunction& function)
{
    QStringList arguments;
    forEachParameter(function, [&arguments](const _DrelFunction::Parameter& parameter) {
        if (parameter.type != DrelVoid)
            arguments.append(keyword(parameter.type));
    });
    const QString call =
        QStringLiteral("%1(%2)").arg(name(function), arguments.join(QLatin1Char(',')));
    const QString prefix = fieldText(function.prefix);
    return prefix.isEmpty() ? call : prefix + QLatin1Char('.') + call;
}

bool isOffered(const _DrelFunction& function)
{
    const QString text = name(function);
    return text != QLatin1String("show_procedure_box") && text != QLatin1String("show_capplet_box");
}

QList<_DrelFunction> callableUserFunctions(const QList<QPair<_DrelFunction, int>>& functions)
{
    QList<_DrelFunction> callable;
    for (const auto& function : functions) {
        if (function.first.kind != HiddenKind)
            callable.append(function.first);
    }
    return callable;
}

} // namespace entry_functions
