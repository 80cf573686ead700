#include "standalone/model_service/json/json_write.h"

#include "base/json_scan.h"

#include <algorithm>
#include <charconv>
#include <utility>
#include <vector>

namespace standalone {

namespace {

void appendEscaped(std::string& json, char c)
{
    constexpr const char* digits = "0123456789abcdef";
    const auto control = json_scan::escapedControls.find(c);
    json += '\\';
    if (control != std::string_view::npos) {
        json += json_scan::escapeNames[control];
    } else if (c == '"' || c == '\\') {
        json += c;
    } else {
        json += "u00";
        json += digits[static_cast<unsigned char>(c) >> 4];
        json += digits[c & 0xF];
    }
}

bool isDouble(std::string_view number)
{
    double value = 0;
    return std::from_chars(number.data(), number.data() + number.size(), value).ec == std::errc();
}

/// An array or object that is being written; of members of one name the last one counts.
struct OpenValue
{
    explicit OpenValue(const JsonValue& value) : isObject(value.isObject())
    {
        if (!isObject) {
            for (auto at = value.first(); !at.isMissing(); at = at.nextIn(value))
                elements.push_back({{}, at});
            return;
        }
        for (auto at = value.first(); !at.isMissing(); at = at.valueOfName().nextIn(value))
            elements.push_back({at.text(), at.valueOfName()});
        const auto before = [](const auto& a, const auto& b) {
            return json_scan::isBefore(a.first, b.first);
        };
        std::stable_sort(elements.begin(), elements.end(), before);
        const auto same = [](const auto& a, const auto& b) { return a.first == b.first; };
        const auto kept = std::unique(elements.rbegin(), elements.rend(), same);
        elements.erase(elements.begin(), kept.base());
    }

    bool isObject;
    std::vector<std::pair<std::string, JsonValue>> elements;
    std::size_t next = 0;
};

} // namespace

void appendJsonString(std::string& json, std::string_view text)
{
    json += '"';
    if (json_scan::isPlain(text)) {
        json += text;
    } else {
        for (const char c : text) {
            if (json_scan::isPlain({&c, 1}))
                json += c;
            else
                appendEscaped(json, c);
        }
    }
    json += '"';
}

void appendJsonText(std::string& json, std::string_view text)
{
    auto end = text.find('\n');
    if (end == std::string_view::npos)
        return appendJsonString(json, text);
    json += '[';
    for (std::size_t begin = 0;; end = text.find('\n', begin)) {
        appendJsonString(json, text.substr(begin, end - begin));
        if (end == std::string_view::npos)
            break;
        json += ',';
        begin = end + 1;
    }
    json += ']';
}

bool appendJsonValue(std::string& json, const JsonValue& value)
{
    const auto start = json.size();
    bool isFit = true;
    std::vector<OpenValue> open;
    const auto append = [&](const JsonValue& v) {
        if (v.isString()) {
            bool isSound = true;
            const std::string text = v.text(&isSound);
            if (isSound)
                appendJsonString(json, text);
            else // half a character, which only its escape can say
                json.append("\"").append(v.source()).append("\"");
        } else if (v.isObject() || v.isArray()) {
            json += v.isObject() ? '{' : '[';
            open.emplace_back(v);
        } else {
            json += v.source();
            isFit = isFit && (v.kind() != JsonValue::Number || isDouble(v.source()));
        }
        isFit = isFit && open.size() <= MaxKeptNesting;
    };
    append(value);
    while (isFit && !open.empty()) {
        auto& level = open.back();
        if (level.next == level.elements.size()) {
            json += level.isObject ? '}' : ']';
            open.pop_back();
            continue;
        }
        if (level.next > 0)
            json += ',';
        const auto& [name, element] = level.elements[level.next++];
        if (level.isObject) {
            appendJsonString(json, name);
            json += ':';
        }
        append(JsonValue(element));
    }
    if (!isFit)
        json.resize(start);
    return isFit;
}

} // namespace standalone
