#pragma once

#include "standalone/model_service/json/DocumentPlace.h"
#include "standalone/model_service/json/JsonTree.h"
#include "standalone/model_service/json/LoadReport.h"

#include <QVarLengthArray>

#include <cstdint>
#include <list>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace standalone {

/// Whether a value can be read as a field of a type.
bool isText(const JsonValue& value);
bool isInt(const JsonValue& value);
bool isUnsigned(const JsonValue& value);
bool isObjects(const JsonValue& value); ///< an array of nothing else

/// Reads the fields of one record from a JSON object: the twin of FieldWriter.
///
/// A missing member gives the default; one of a wrong type does too, is reported, and stays in
/// what rest() returns. Of members of one name the last one counts.
class FieldReader
{
public:
    static constexpr bool Reads = true;

    /// Names and places are not copied.
    FieldReader(const JsonValue& object, LoadReport& report, const DocumentPlace& where = {});

    /// The default is a std::string_view, a bool, an int or a std::uint32_t, as the value is.
    template <class Value, class Standard>
    void field(std::string_view name, Value& value, Standard standard)
    {
        const bool isRead = mayHave(name) && read(name, value);
        if (!isRead && !(value == standard)) // a new record has it already
            value = standard;
    }
    void field(std::string_view name, std::string& value)
    {
        field(name, value, std::string_view());
    }
    void code(std::string_view name, std::string& text) { field(name, text); }

    template <class Record, class Visit>
    void record(std::string_view name, Record& value, Visit visit)
    {
        const auto object = takeObject(name);
        if (object.isMissing())
            return;
        const DocumentPlace place(name, m_where);
        FieldReader reader(object, m_report, place);
        visit(reader, value);
        const auto rest = reader.rest();
        if (!rest.empty())
            keep(name, rest);
    }

    /// Nothing is taken of an array that holds anything but objects.
    template <class Element, class Visit>
    void list(std::string_view name, std::vector<Element>& values, Visit visit)
    {
        values.clear();
        const auto array = takeObjects(name);
        std::string rests;
        bool hasRest = false;
        const DocumentPlace place(name, m_where);
        DocumentPlace element(0, place);
        for (auto item = array.first(); !item.isMissing(); item = item.nextIn(array)) {
            FieldReader reader(item, m_report, element);
            values.emplace_back();
            visit(reader, values.back());
            const auto rest = reader.rest();
            rests += rests.empty() ? '[' : ',';
            rests += rest.empty() ? "{}" : rest;
            hasRest = hasRest || !rest.empty();
            element.setIndex(element.index() + 1);
        }
        if (hasRest)
            keep(name, rests + ']');
    }

    /// An object of texts.
    void map(std::string_view name, std::map<std::string, std::string>& values);

    /// Takes an object or an array out of what rest() returns. Missing if there is none; a member
    /// of another type is reported.
    JsonValue takeObject(std::string_view name);
    JsonValue takeArray(std::string_view name);

    /// Shows every member to @p take(name, value), which says whether it could read it.
    template <class Take> void eachMember(Take take)
    {
        for (auto& member : m_members) {
            member.isTaken = take(member.name, member.value);
            m_takenCount += member.isTaken ? 1 : 0;
        }
    }

    /// Gives rest() a member in place of what it has of that name.
    void keep(std::string_view name, std::string json);
    /// Makes rest() return every member but that one, read or not.
    void keepAllBut(std::string_view name) { m_unkept = name; }

    /// The members that no call above could read, and what they could not read of a nested one, as
    /// a JSON object; empty if there are none.
    std::string rest();

private:
    struct Member
    {
        std::string_view name;
        JsonValue value;
        bool isTaken;
    };

    /// One of 64 bits for a name: a name whose bit no member has is missing, without a search. Most
    /// fields of most records are.
    static constexpr std::uint64_t hintOf(std::string_view name)
    {
        const auto letter = name.empty() ? 0u : static_cast<unsigned char>(name.front());
        return std::uint64_t(1) << ((letter * 5 + name.size()) & 63);
    }
    bool mayHave(std::string_view name) const { return (m_hints & hintOf(name)) != 0; }

    /// Reads a member; false, with the value as it was, if there is none that fits.
    bool read(std::string_view name, std::string& value);
    bool read(std::string_view name, bool& value);
    bool read(std::string_view name, int& value);
    bool read(std::string_view name, std::uint32_t& value);

    /// The member, or missing; marks it as read if @p fits.
    template <class Fits> JsonValue member(std::string_view name, Fits fits);
    JsonValue takeObjects(std::string_view name);

    LoadReport& m_report;
    const DocumentPlace& m_where;
    QVarLengthArray<Member, 16> m_members;
    std::uint64_t m_hints = 0; ///< which names may be there
    int m_takenCount = 0;
    std::string_view m_unkept;      ///< set if all other members are kept
    std::list<std::string> m_names; ///< names that had escapes
    std::vector<std::pair<std::string, std::string>> m_kept;
};

} // namespace standalone
