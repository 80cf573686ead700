#include "standalone/codegen/variable_code.h"

#include "model/type_tables.h"
#include "standalone/codegen/code_text.h"
#include "standalone/codegen/problem_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace codegen {

namespace {

struct IntegerRange
{
    std::int64_t lowest;
    std::uint64_t highest;
};

std::optional<IntegerRange> integerRange(DrelVarType type)
{
    switch (type) {
    case DrelChar:
    case DrelS8:
        return IntegerRange{INT8_MIN, INT8_MAX};
    case DrelU8:
        return IntegerRange{0, UINT8_MAX};
    case DrelS16:
        return IntegerRange{INT16_MIN, INT16_MAX};
    case DrelU16:
        return IntegerRange{0, UINT16_MAX};
    case DrelS32:
        return IntegerRange{INT32_MIN, INT32_MAX};
    case DrelU32:
        return IntegerRange{0, UINT32_MAX};
    case DrelS64:
        return IntegerRange{INT64_MIN, INT64_MAX};
    case DrelU64:
        return IntegerRange{0, UINT64_MAX};
    default:
        return std::nullopt;
    }
}

/// Decimal or, with 0x, hexadecimal; as a literal that has the value in any integer type.
std::optional<std::string> integerLiteral(const std::string& text, const IntegerRange& range)
{
    const bool negative = text[0] == '-';
    std::string digits = text.substr(negative || text[0] == '+' ? 1 : 0);
    int base = 10;
    if (digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X')) {
        base = 16;
        digits.erase(0, 2);
    }
    std::uint64_t size = 0;
    const char* end = digits.data() + digits.size();
    const auto parsed = std::from_chars(digits.data(), end, size, base);
    if (parsed.ec != std::errc() || parsed.ptr != end)
        return std::nullopt;
    if (!negative && size <= range.highest)
        return std::to_string(size) + (size > INT64_MAX ? "ULL" : "");
    if (negative && (size == 0 || size - 1 <= static_cast<std::uint64_t>(-(range.lowest + 1)))) {
        if (range.lowest == 0 && size != 0)
            return std::nullopt;
        // The lowest number has no literal of its own.
        return size > INT64_MAX ? "-9223372036854775807 - 1" : '-' + std::to_string(size);
    }
    return std::nullopt;
}

std::optional<std::string> realLiteral(const std::string& text)
{
    double value = 0;
    const char* begin = text.data() + (text[0] == '+' ? 1 : 0);
    const char* end = text.data() + text.size();
    const auto parsed = std::from_chars(begin, end, value);
    if (parsed.ec != std::errc() || parsed.ptr != end || !std::isfinite(value))
        return std::nullopt;
    char printed[40];
    const auto result = std::to_chars(printed, printed + sizeof printed, value);
    std::string literal(printed, result.ptr);
    // Without a point it would be an integer, which may be too small for it.
    if (literal.find_first_of(".e") == std::string::npos)
        literal += ".0";
    return literal;
}

std::optional<std::string> scalarLiteral(DrelVarType type, const std::string& value)
{
    const std::string text = trimmed(value);
    if (text.empty())
        return "0";
    if (type == DrelBool) {
        if (text == "true" || text == "false")
            return text;
        return text == "0" || text == "1" ? std::optional<std::string>(text) : std::nullopt;
    }
    if (type == DrelFloat || type == DrelDouble)
        return realLiteral(text);
    return integerLiteral(text, *integerRange(type));
}

std::string typeText(DrelVarType type)
{
    return type == DrelChar ? "char" : varTypeKeyword(type);
}

/// A stored text; an empty one may stand in the store as the word NULL.
std::string textValue(const std::string& value)
{
    return value == "NULL" ? std::string() : value;
}

VariableCode problem(const char* source, std::initializer_list<std::string> arguments)
{
    return {{}, {}, problemText(source, arguments)};
}

VariableCode wrongValue(const processVariable& variable)
{
    return problem(QT_TRANSLATE_NOOP("codegen", "变量“%1”的值“%2”与类型 %3 不符"),
                   {variable.name, variable.value, variable.type});
}

VariableCode defined(const std::string& type, const std::string& name, const std::string& value)
{
    const std::string declaration = type + ' ' + name;
    return {declaration, {declaration + " = " + value + ';'}, {}};
}

std::size_t lengthOf(const processVariable& variable, std::size_t valueSize)
{
    return std::max<std::size_t>(
        {1, valueSize, static_cast<std::size_t>(std::max(0, variable.length))});
}

VariableCode arrayCode(const processVariable& variable, DrelVarType element)
{
    std::string text = trimmed(variable.value);
    if (text.size() >= 2 && ((text.front() == '[' && text.back() == ']') ||
                             (text.front() == '{' && text.back() == '}')))
        text = text.substr(1, text.size() - 2);

    std::string values;
    std::size_t count = 0;
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t end = text.find(',', begin);
        if (end == std::string::npos)
            end = text.size();
        const auto literal = scalarLiteral(element, text.substr(begin, end - begin));
        if (!literal)
            return wrongValue(variable);
        values += (count++ > 0 ? ", " : "") + *literal;
        begin = end + 1;
    }
    const std::string size = std::to_string(lengthOf(variable, count));
    return defined("rt::array<" + typeText(element) + ", " + size + '>', variable.name,
                   '{' + values + '}');
}

/// What a type points to, by its keyword with the star; empty for all others.
std::string pointedTo(DrelVarType type)
{
    for (const auto& [value, keyword] : varTypeNames) {
        if (value == type && keyword.back() == '*')
            return keyword.substr(0, keyword.size() - 1);
    }
    return std::string();
}

/// A pointer to a record of its own, so that it can be passed on and filled.
VariableCode recordPointerCode(const processVariable& variable, const std::string& record)
{
    // Longer than names of variables are, so that it is no other's.
    const std::string storage = "record_of_the_pointer_" + variable.name;
    VariableCode code = defined(record + '*', variable.name, '&' + storage);
    code.lines.insert(code.lines.begin(), record + ' ' + storage + " = {};");
    return code;
}

} // namespace

VariableCode variableCode(const processVariable& variable)
{
    const std::string& name = variable.name;
    if (!isIdentifier(name))
        return problem(QT_TRANSLATE_NOOP("codegen", "“%1”不能用作变量名"), {name});

    const DrelVarType type = varTypeFromKeyword(variable.type);
    const std::string text = textValue(variable.value);
    const std::string length = std::to_string(lengthOf(variable, text.size()));
    if (type == DrelVoid)
        return problem(QT_TRANSLATE_NOOP("codegen", "变量“%1”的类型“%2”未知"),
                       {name, variable.type});
    if (type == DrelString)
        return defined("string", name,
                       "string::limited(" + length + ", " + stringLiteral(text) + ')');
    if (type == DrelCharPtr)
        return defined("rt::text<" + length + '>', name, '{' + stringLiteral(text) + '}');
    if (type == DrelVoidPtr)
        return defined("void*", name, "0");
    const std::string target = pointedTo(type);
    if (type > DrelVoidPtr && type <= DrelBoolPtr)
        return arrayCode(variable, varTypeFromKeyword(target));
    if (integerRange(type) || type == DrelBool || type == DrelFloat || type == DrelDouble) {
        const auto literal = scalarLiteral(type, variable.value);
        return literal ? defined(typeText(type), name, *literal) : wrongValue(variable);
    }
    return target.empty() ? defined(varTypeKeyword(type), name, "{}")
                          : recordPointerCode(variable, target);
}

} // namespace codegen
