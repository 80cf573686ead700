#include "standalone/codegen/value_kinds.h"

#include "standalone/codegen/code_text.h"
#include "standalone/codegen/problem_text.h"
#include "standalone/codegen/user_code.h"

#include <algorithm>

namespace codegen {

namespace {

bool isNumberLiteral(const std::string& text)
{
    // A sign may stand before it; what follows a digit may be anything that numbers are made of.
    const std::size_t begin = text.find_first_not_of("+-");
    if (begin == std::string::npos || begin > 1)
        return false;
    const bool hasDigit = text[begin] >= '0' && text[begin] <= '9';
    return hasDigit &&
           text.find_first_not_of("0123456789abcdefABCDEFxXuUlL.'", begin) == std::string::npos;
}

/// Whether the bracket at @p open is closed by the last character.
bool closesAtTheEnd(const std::string& masked, std::size_t open)
{
    int depth = 0;
    for (std::size_t at = open; at < masked.size(); ++at) {
        if (masked[at] == '(' || masked[at] == '[')
            ++depth;
        else if ((masked[at] == ')' || masked[at] == ']') && --depth == 0)
            return at + 1 == masked.size();
    }
    return false;
}

} // namespace

ValueKind kindOfType(DrelVarType type)
{
    if (type == DrelString || type == DrelCharPtr)
        return ValueKind::Text;
    if (type >= DrelChar && type <= DrelBool)
        return ValueKind::Number;
    if (type > DrelVoidPtr && type <= DrelBoolPtr)
        return ValueKind::Array;
    return type >= DrelCanType && type != DrelVoidPtr && !varTypeKeyword(type).empty()
               ? ValueKind::Record
               : ValueKind::Unknown;
}

ValueKind kindOfType(const std::string& keyword)
{
    return kindOfType(varTypeFromKeyword(keyword));
}

std::string kindText(ValueKind kind)
{
    switch (kind) {
    case ValueKind::Number:
        return problemText(QT_TRANSLATE_NOOP("codegen", "数值"));
    case ValueKind::Text:
        return problemText(QT_TRANSLATE_NOOP("codegen", "文本"));
    case ValueKind::Array:
        return problemText(QT_TRANSLATE_NOOP("codegen", "数组"));
    case ValueKind::Record:
        return problemText(QT_TRANSLATE_NOOP("codegen", "结构"));
    case ValueKind::Unknown:
        break;
    }
    return std::string();
}

ValueKind kindOfExpression(const std::string& expression, const KnownNames& names)
{
    const std::string text = expressionText(expression);
    if (text.empty())
        return ValueKind::Unknown;
    if (isNumberLiteral(text) || text == "true" || text == "false")
        return ValueKind::Number;
    const auto variable = names.variables.find(text);
    if (variable != names.variables.end())
        return variable->second;

    const std::string masked = withoutLiterals(text);
    if (masked.front() == '"')
        return masked.find_first_not_of("\" \t\r\n") == std::string::npos ? ValueKind::Text
                                                                          : ValueKind::Unknown;
    if (masked.front() == '\'' && masked.find_first_not_of("' ") == std::string::npos)
        return ValueKind::Number;
    const std::size_t bracket = masked.find_first_of("([");
    if (bracket == std::string::npos || !closesAtTheEnd(masked, bracket))
        return ValueKind::Unknown;
    const std::string name = expressionText(text.substr(0, bracket));
    if (masked[bracket] == '[') {
        const auto array = names.variables.find(name);
        const bool hasElements =
            array != names.variables.end() &&
            (array->second == ValueKind::Array || array->second == ValueKind::Text);
        return hasElements ? ValueKind::Number : ValueKind::Unknown;
    }
    const auto function = names.functions.find(name);
    return function == names.functions.end() ? ValueKind::Unknown
                                             : kindOfType(function->second->returnType);
}

bool differ(ValueKind left, ValueKind right)
{
    return left != ValueKind::Unknown && right != ValueKind::Unknown && left != right;
}

} // namespace codegen
