#pragma once

#include <QJsonArray>
#include <QJsonObject>

#include <cstdint>
#include <string>
#include <vector>

namespace standalone {

/// Writes the fields of one record into a JSON object, over what was kept of it at reading.
///
/// A field that holds its default is left out. Kept members that no field overwrites stay; so does
/// a member of the wrong type as long as its field holds the default. A text of several lines
/// becomes an array of lines.
class FieldWriter
{
public:
    static constexpr bool Reads = false;

    explicit FieldWriter(const QJsonObject& kept = {}) : m_object(kept) {}

    void field(const char* name, const std::string& value, const char* standard = "");
    void field(const char* name, bool value, bool standard);
    void field(const char* name, int value, int standard);
    void field(const char* name, std::uint32_t value, std::uint32_t standard);

    template <class Record, class Visit>
    void record(const char* name, const Record& value, Visit visit)
    {
        FieldWriter writer(keptObject(name));
        visit(writer, value);
        put(name, writer.object(), writer.object().isEmpty(),
            [](const QJsonValue& v) { return v.isObject(); });
    }

    template <class Element, class Visit>
    void list(const char* name, const std::vector<Element>& values, Visit visit)
    {
        // What was kept of the elements is theirs as long as none was added or removed.
        const QJsonArray kept = keptArray(name, static_cast<int>(values.size()));
        QJsonArray array;
        for (const auto& value : values) {
            FieldWriter writer(kept.at(array.size()).toObject());
            visit(writer, value);
            array.append(writer.object());
        }
        put(name, array, array.isEmpty(), [](const QJsonValue& v) { return v.isArray(); });
    }

    /// Writes @p value as it is, in place of whatever was kept under @p name.
    void insert(const char* name, const QJsonValue& value);

    const QJsonObject& object() const { return m_object; }

private:
    /// A standard value replaces only what @p fits says would be read.
    void put(const char* name, const QJsonValue& value, bool isStandard,
             bool (*fits)(const QJsonValue&));
    QJsonObject keptObject(const char* name) const;
    QJsonArray keptArray(const char* name, int size) const;

    QJsonObject m_object;
};

} // namespace standalone
