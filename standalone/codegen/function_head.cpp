#include "standalone/codegen/function_head.h"

#include "standalone/codegen/code_text.h"

#include <algorithm>
#include <cctype>

namespace codegen {

namespace {

using Words = std::vector<std::string>;

bool isOneOf(const std::string& word, std::initializer_list<const char*> words)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

/// Names and numbers whole, other signs one by one, blanks not at all.
Words wordsOf(const std::string& text)
{
    Words words;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at + 1;
        while (isWordCharacter(text[at]) && end < text.size() && isWordCharacter(text[end]))
            ++end;
        if (!std::isspace(static_cast<unsigned char>(text[at])))
            words.push_back(text.substr(at, end - at));
        at = end;
    }
    return words;
}

/// As one writes a type: names parted by blanks, the other signs close to what is before them.
std::string typeText(const Words& words)
{
    std::string text;
    bool wasName = false;
    for (const std::string& word : words) {
        const bool isName = isWordCharacter(word.front());
        text += (wasName && isName ? " " : "") + word;
        wasName = isName;
    }
    return text;
}

FunctionHead::Parameter parameterOf(Words words, std::size_t number)
{
    const auto cut = std::find_if(words.begin(), words.end(), [](const std::string& word) {
        return word == "=" || word == "[";
    });
    const std::string pointer = cut != words.end() && *cut == "[" ? "*" : "";
    words.erase(cut, words.end());
    const bool isNamed = words.size() > 1 && isWordCharacter(words.back().front()) &&
                         !isOneOf(words.back(), {"int", "char", "double", "float", "long", "short",
                                                 "unsigned", "signed", "const"});
    FunctionHead::Parameter parameter;
    parameter.name = isNamed ? words.back() : "p" + std::to_string(number);
    if (isNamed)
        words.pop_back();
    parameter.type = typeText(words) + pointer;
    return parameter;
}

std::vector<FunctionHead::Parameter> parametersOf(const Words& words)
{
    std::vector<FunctionHead::Parameter> parameters;
    Words part;
    int depth = 0; // of brackets in default arguments and types
    const auto finish = [&] {
        if (!part.empty() && part != Words{"void"})
            parameters.push_back(parameterOf(part, parameters.size() + 1));
        part.clear();
    };
    for (const std::string& word : words) {
        depth += isOneOf(word, {"(", "{", "<"}) - isOneOf(word, {")", "}", ">"});
        if (word == "," && depth == 0)
            finish();
        else
            part.push_back(word);
    }
    finish();
    return parameters;
}

/// The lines right above a place that are comments from begin to end.
std::string commentAbove(const std::string& code, std::size_t place)
{
    std::string comment;
    std::size_t end = place ? code.rfind('\n', place - 1) : std::string::npos;
    while (end != std::string::npos) {
        const std::size_t before = end ? code.rfind('\n', end - 1) : std::string::npos;
        const std::size_t begin = before == std::string::npos ? 0 : before + 1;
        std::string line = code.substr(begin, end - begin);
        const std::size_t sign = line.find_first_not_of(" \t");
        if (sign == std::string::npos || line.compare(sign, 2, "//") != 0)
            break;
        line.erase(0, std::min(line.find_first_not_of("/! \t", sign), line.size()));
        line.erase(line.find_last_not_of(" \t\r") + 1);
        comment = line + (comment.empty() || line.empty() ? "" : " ") + comment;
        end = before;
    }
    return comment;
}

} // namespace

FunctionHead headOf(const std::string& code, const FunctionDefinition& definition)
{
    const std::string text = withoutLiterals(definition.head);
    const std::size_t open = text.find('(');
    const std::size_t close = text.rfind(')');
    Words type = wordsOf(text.substr(0, open));
    FunctionHead head;
    head.name = definition.name;
    type.pop_back();
    head.returnType = typeText(type);
    head.parameters = parametersOf(wordsOf(text.substr(open + 1, close - open - 1)));
    head.comment = commentAbove(code, definition.begin);
    return head;
}

} // namespace codegen
