#include "standalone/model_service/json/FieldReader.h"

#include "base/json_scan.h"
#include "standalone/model_service/json/json_write.h"

#include <algorithm>
#include <limits>

namespace standalone {

namespace {

template <class Integer> bool isWholeOf(const JsonValue& value)
{
    std::int64_t number = 0;
    return value.whole(number) && number >= std::numeric_limits<Integer>::min() &&
           number <= std::numeric_limits<Integer>::max();
}

/// False for a value that is missing.
template <class Integer> bool readWhole(const JsonValue& value, Integer& number)
{
    std::int64_t whole = 0;
    const bool isThere = value.whole(whole);
    if (isThere)
        number = static_cast<Integer>(whole);
    return isThere;
}

std::string textOf(const JsonValue& value, bool& isSound)
{
    if (value.isString())
        return value.text(&isSound);
    std::string text;
    const auto first = value.first();
    for (auto line = first; !line.isMissing(); line = line.nextIn(value)) {
        text += line.text(&isSound);
        text += '\n';
    }
    if (!text.empty())
        text.pop_back();
    return text;
}

} // namespace

bool isText(const JsonValue& value)
{
    if (!value.isArray())
        return value.isString();
    for (auto line = value.first(); !line.isMissing(); line = line.nextIn(value)) {
        if (!line.isString())
            return false;
    }
    return true;
}

bool isInt(const JsonValue& value)
{
    return isWholeOf<int>(value);
}

bool isUnsigned(const JsonValue& value)
{
    return isWholeOf<std::uint32_t>(value);
}

bool isObjects(const JsonValue& value)
{
    bool fits = value.isArray();
    for (auto item = value.first(); fits && !item.isMissing(); item = item.nextIn(value))
        fits = item.isObject();
    return fits;
}

FieldReader::FieldReader(const JsonValue& object, LoadReport& report, const DocumentPlace& where)
    : m_report(report), m_where(where)
{
    for (auto key = object.first(); !key.isMissing(); key = key.valueOfName().nextIn(object)) {
        std::string_view name = key.source();
        if (!key.isPlain())
            name = m_names.emplace_back(key.text());
        m_members.append({name, key.valueOfName(), false});
        m_hints |= hintOf(name);
    }
}

bool FieldReader::read(std::string_view name, std::string& value)
{
    const auto found = member(name, isText);
    if (found.isMissing())
        return false;
    bool isSound = true;
    if (found.isString() && found.isPlain())
        value = found.source();
    else
        value = textOf(found, isSound);
    if (!isSound)
        m_report.add({name, m_where}, QStringLiteral("无效的字符已替换"));
    return true;
}

bool FieldReader::read(std::string_view name, bool& value)
{
    const auto found = member(name, [](const auto& v) { return v.isBool(); });
    if (!found.isMissing())
        value = found.kind() == JsonValue::True;
    return !found.isMissing();
}

bool FieldReader::read(std::string_view name, int& value)
{
    return readWhole(member(name, isInt), value);
}

bool FieldReader::read(std::string_view name, std::uint32_t& value)
{
    return readWhole(member(name, isUnsigned), value);
}

void FieldReader::map(std::string_view name, std::map<std::string, std::string>& values)
{
    const auto object = takeObject(name);
    if (object.isMissing())
        return;
    const DocumentPlace place(name, m_where);
    FieldReader reader(object, m_report, place);
    reader.eachMember([&](std::string_view key, const JsonValue& value) {
        bool isSound = isText(value);
        if (!isSound)
            m_report.add({key, place}, QStringLiteral("成员类型错误"));
        else
            values.insert_or_assign(std::string(key), textOf(value, isSound));
        return isText(value);
    });
    const auto rest = reader.rest();
    if (!rest.empty())
        keep(name, rest);
}

JsonValue FieldReader::takeObject(std::string_view name)
{
    return member(name, [](const auto& v) { return v.isObject(); });
}

JsonValue FieldReader::takeArray(std::string_view name)
{
    return member(name, [](const auto& v) { return v.isArray(); });
}

JsonValue FieldReader::takeObjects(std::string_view name)
{
    return member(name, isObjects);
}

template <class Fits> JsonValue FieldReader::member(std::string_view name, Fits fits)
{
    if (!mayHave(name))
        return {};
    const auto found = std::find_if(m_members.rbegin(), m_members.rend(),
                                    [&](const Member& member) { return member.name == name; });
    if (found == m_members.rend())
        return {};
    if (!fits(found->value)) {
        m_report.add({name, m_where}, QStringLiteral("成员类型错误"));
        return {};
    }
    m_takenCount += found->isTaken ? 0 : 1;
    found->isTaken = true;
    return found->value;
}

void FieldReader::keep(std::string_view name, std::string json)
{
    m_kept.emplace_back(name, std::move(json));
}

std::string FieldReader::rest()
{
    if (m_takenCount == m_members.size() && m_kept.empty() && m_unkept.empty())
        return {};
    std::vector<const Member*> members;
    for (const auto& member : m_members)
        members.push_back(&member);
    std::stable_sort(members.begin(), members.end(), [](const Member* a, const Member* b) {
        return json_scan::isBefore(a->name, b->name);
    });
    auto rests = std::move(m_kept);
    for (std::size_t i = 0; i < members.size(); ++i) {
        const auto& member = *members[i];
        const DocumentPlace place(member.name, m_where);
        if (i + 1 < members.size() && members[i + 1]->name == member.name) {
            m_report.add(place, QStringLiteral("成员重复，只保留最后一个"));
            continue;
        }
        if (m_unkept.empty() ? member.isTaken : member.name == m_unkept && member.isTaken)
            continue;
        std::string json;
        if (appendJsonValue(json, member.value))
            rests.emplace_back(member.name, std::move(json));
        else
            m_report.add(place, QStringLiteral("嵌套过深或数字超出范围，已舍弃"));
    }
    std::stable_sort(rests.begin(), rests.end(), [](const auto& a, const auto& b) {
        return json_scan::isBefore(a.first, b.first);
    });
    std::string object;
    for (const auto& [name, json] : rests) {
        object += object.empty() ? '{' : ',';
        appendJsonString(object, name);
        object += ':';
        object += json;
    }
    return object.empty() ? object : object + '}';
}

} // namespace standalone
