#pragma once

#include "standalone/model_service/json/JsonTree.h"

#include <QVarLengthArray>

#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace standalone {

bool isObjects(const JsonValue& value);

/// Writes the fields of one record as a JSON object, over what was kept of it at reading.
///
/// A field that holds its default is left out. Kept members that no field overwrites stay; so does
/// a member of the wrong type as long as its field holds the default. A text of several lines
/// becomes an array of lines. Members are written in their order when all are told.
class FieldWriter
{
public:
    static constexpr bool Reads = false;

    /// @p kept is what FieldReader::rest() returned.
    explicit FieldWriter(const std::string& kept = {});

    /// The value is a std::string, a bool, an int or a std::uint32_t.
    template <class Value, class Standard>
    void field(std::string_view name, const Value& value, Standard standard)
    {
        // Most fields of most records.
        const bool isStandard = value == standard;
        if (!isStandard || m_hasKept)
            write(name, value, isStandard);
    }
    void field(std::string_view name, const std::string& value)
    {
        field(name, value, std::string_view());
    }
    void code(std::string_view name, const std::string& text) { field(name, text); }

    /// A field that is written whatever it holds.
    void always(std::string_view name, int value) { write(name, value, false); }

    template <class Record, class Visit>
    void record(std::string_view name, const Record& value, Visit visit)
    {
        FieldWriter writer(keptText(name));
        visit(writer, value);
        const bool isStandard = writer.isEmpty();
        put(
            name, isStandard, [](const auto& v) { return v.isObject(); },
            [&](std::string& json) { writer.finish(json); });
    }

    template <class Element, class Visit>
    void list(std::string_view name, const std::vector<Element>& values, Visit visit)
    {
        // What was kept of the elements is theirs as long as none was added or removed.
        const auto kept = keptElements(name, values.size());
        std::string array = "[";
        for (std::size_t i = 0; i < values.size(); ++i) {
            FieldWriter writer(kept.empty() ? std::string() : kept[i]);
            visit(writer, values[i]);
            array += i > 0 ? "," : "";
            writer.finish(array);
        }
        array += ']';
        put(name, values.empty(), isObjects, [&](std::string& json) { json += array; });
    }

    void map(std::string_view name, const std::map<std::string, std::string>& values);

    /// Writes a member in place of whatever was kept under its name. The text is asked for by
    /// finish().
    void insert(std::string_view name, std::function<void(std::string& json)> writeValue);

    /// Whether a member of that name was kept.
    bool keeps(std::string_view name) const { return !m_kept.root().member(name).isMissing(); }
    /// The kept member as a JSON text; empty if there is none or it is no object.
    std::string keptText(std::string_view name) const;

    bool isEmpty() const { return m_members.isEmpty() && m_kept.root().first().isMissing(); }

    /// Appends the object. Call it once, last.
    void finish(std::string& json);

private:
    struct Member
    {
        std::string_view name;
        int begin; ///< of its text in m_texts; -1 for a body
        int end;
        int body;
        JsonValue kept;
    };

    void write(std::string_view name, const std::string& value, bool isStandard);
    void write(std::string_view name, bool value, bool isStandard);
    void write(std::string_view name, int value, bool isStandard);
    void write(std::string_view name, std::uint32_t value, bool isStandard);

    /// A standard value replaces only what @p fits says would be read.
    template <class Fits, class Write>
    void put(std::string_view name, bool isStandard, Fits fits, Write write);
    std::vector<std::string> keptElements(std::string_view name, std::size_t count) const;
    void addKept();

    JsonTree m_kept;
    bool m_hasKept;
    QVarLengthArray<Member, 24> m_members;
    std::string m_texts;
    std::vector<std::function<void(std::string&)>> m_bodies;
    std::list<std::string> m_names;
};

template <class Fits, class Write>
void FieldWriter::put(std::string_view name, bool isStandard, Fits fits, Write write)
{
    if (isStandard) {
        const auto kept = m_kept.root().member(name);
        if (kept.isMissing() || !fits(kept))
            return;
    }
    const int begin = static_cast<int>(m_texts.size());
    write(m_texts);
    m_members.append({name, begin, static_cast<int>(m_texts.size()), -1, {}});
}

} // namespace standalone
