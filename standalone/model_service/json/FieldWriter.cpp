#include "standalone/model_service/json/FieldWriter.h"

#include "base/json_scan.h"
#include "standalone/model_service/json/FieldReader.h"
#include "standalone/model_service/json/json_write.h"

#include <algorithm>

namespace standalone {

FieldWriter::FieldWriter(const std::string& kept) : m_hasKept(!kept.empty())
{
    constexpr std::size_t usualStep = 256;
    m_texts.reserve(usualStep);
    if (m_hasKept)
        m_kept.read(QByteArray::fromStdString(kept));
}

void FieldWriter::write(std::string_view name, const std::string& value, bool isStandard)
{
    put(name, isStandard, isText, [&](std::string& json) { appendJsonText(json, value); });
}

void FieldWriter::write(std::string_view name, bool value, bool isStandard)
{
    put(
        name, isStandard, [](const auto& v) { return v.isBool(); },
        [&](std::string& json) { json += value ? "true" : "false"; });
}

void FieldWriter::write(std::string_view name, int value, bool isStandard)
{
    put(name, isStandard, isInt, [&](std::string& json) { json += std::to_string(value); });
}

void FieldWriter::write(std::string_view name, std::uint32_t value, bool isStandard)
{
    put(name, isStandard, isUnsigned, [&](std::string& json) { json += std::to_string(value); });
}

void FieldWriter::map(std::string_view name, const std::map<std::string, std::string>& values)
{
    FieldWriter writer(keptText(name));
    for (const auto& [key, value] : values) {
        const auto append = [&text = value](std::string& json) { appendJsonString(json, text); };
        writer.put(key, false, isText, append);
    }
    put(
        name, writer.isEmpty(), [](const auto& v) { return v.isObject(); },
        [&](std::string& json) { writer.finish(json); });
}

void FieldWriter::insert(std::string_view name, std::function<void(std::string&)> writeValue)
{
    m_members.append({name, -1, -1, static_cast<int>(m_bodies.size()), {}});
    m_bodies.push_back(std::move(writeValue));
}

std::string FieldWriter::keptText(std::string_view name) const
{
    std::string json;
    const auto kept = m_kept.root().member(name);
    if (kept.isObject())
        appendJsonValue(json, kept);
    return json;
}

std::vector<std::string> FieldWriter::keptElements(std::string_view name, std::size_t count) const
{
    std::vector<std::string> elements;
    const auto kept = m_kept.root().member(name);
    if (!kept.isArray())
        return elements;
    for (auto item = kept.first(); !item.isMissing(); item = item.nextIn(kept)) {
        elements.emplace_back();
        if (item.isObject())
            appendJsonValue(elements.back(), item);
    }
    if (elements.size() != count)
        elements.clear();
    return elements;
}

void FieldWriter::addKept()
{
    const auto before = [](const Member& a, const Member& b) {
        return json_scan::isBefore(a.name, b.name);
    };
    std::sort(m_members.begin(), m_members.end(), before);
    const auto object = m_kept.root();
    const int told = m_members.size();
    for (auto key = object.first(); !key.isMissing(); key = key.valueOfName().nextIn(object)) {
        const std::string_view name = m_names.emplace_back(key.text());
        const Member member{name, -1, -1, -1, key.valueOfName()};
        if (!std::binary_search(m_members.begin(), m_members.begin() + told, member, before))
            m_members.append(member);
    }
    if (m_members.size() > told)
        std::sort(m_members.begin(), m_members.end(), before);
}

void FieldWriter::finish(std::string& json)
{
    addKept();
    json += '{';
    bool isFirst = true;
    for (const auto& member : m_members) {
        if (!isFirst)
            json += ',';
        isFirst = false;
        appendJsonString(json, member.name);
        json += ':';
        if (member.body >= 0)
            m_bodies[static_cast<std::size_t>(member.body)](json);
        else if (member.begin >= 0)
            json.append(m_texts, static_cast<std::size_t>(member.begin),
                        static_cast<std::size_t>(member.end - member.begin));
        else
            appendJsonValue(json, member.kept);
    }
    json += '}';
}

} // namespace standalone
