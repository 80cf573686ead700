#include "panels/api_values.h"

#include "model/DrelFunction.h"
#include "model/type_tables.h"

#include <cstring>

namespace api_values {

namespace {

constexpr QLatin1Char quote('"');

/// Of a field that may be full.
template <std::size_t Size> std::string textOf(const char (&field)[Size])
{
    return std::string(field, strnlen(field, Size));
}

std::string keywordOf(std::int32_t type)
{
    return varTypeKeyword(DrelVarType(type));
}

} // namespace

std::vector<ApiProcessBlock::Parameter> parametersOf(const _DrelFunction& function)
{
    std::vector<ApiProcessBlock::Parameter> parameters;
    for (const _DrelFunction::Parameter& each : function.params) {
        if (each.name[0] == '\0')
            break;
        if (each.type == DrelVoid)
            continue;
        const std::string type = keywordOf(each.type);
        const bool isQuoted = isText(QString::fromStdString(type));
        parameters.push_back({type, isQuoted ? "\"\"" : "", textOf(each.description)});
    }
    return parameters;
}

QString returnTypeOf(const _DrelFunction& function)
{
    return QString::fromStdString(keywordOf(function.returnType));
}

bool returnsAValue(const _DrelFunction& function)
{
    constexpr int hidden = 100;
    return function.returnType != DrelVoid && function.returnType != hidden;
}

std::optional<QString> suggestedReturn(const _DrelFunction& function,
                                       const std::vector<processVariable>& globals)
{
    if (function.returnType == DrelVoid)
        return QString();
    if (function.returnType != DrelS32)
        return std::nullopt;
    QString last;
    for (const processVariable& variable : globals) {
        if (variable.type != "s32")
            continue;
        last = QString::fromStdString(variable.name);
        if (variable.name == "global_ret")
            break;
    }
    return last;
}

bool isText(const QString& type)
{
    return type == QLatin1String("string") || type == QLatin1String("char*");
}

QString quoted(const QString& text)
{
    const int quotes = text.count(quote);
    if (quotes >= 2)
        return text;
    if (quotes == 0)
        return quote + text + quote;
    if (text.size() == 1)
        return QString(2, quote);
    QString whole = text;
    if (!whole.startsWith(quote))
        whole.prepend(quote);
    if (!text.endsWith(quote))
        whole.append(quote);
    return whole;
}

} // namespace api_values
