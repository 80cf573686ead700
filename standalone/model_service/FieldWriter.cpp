#include "standalone/model_service/FieldWriter.h"

#include "standalone/model_service/json_values.h"

namespace standalone {

void FieldWriter::field(const char* name, const std::string& value, const char* standard)
{
    put(name, fromText(value), value == standard, isText);
}

void FieldWriter::field(const char* name, bool value, bool standard)
{
    put(name, value, value == standard, isFlag);
}

void FieldWriter::field(const char* name, int value, int standard)
{
    put(name, value, value == standard, isWhole<int>);
}

void FieldWriter::field(const char* name, std::uint32_t value, std::uint32_t standard)
{
    put(name, static_cast<double>(value), value == standard, isWhole<std::uint32_t>);
}

void FieldWriter::insert(const char* name, const QJsonValue& value)
{
    m_object.insert(QLatin1String(name), value);
}

void FieldWriter::put(const char* name, const QJsonValue& value, bool isStandard,
                      bool (*fits)(const QJsonValue&))
{
    const QLatin1String key(name);
    if (!isStandard) {
        m_object.insert(key, value);
        return;
    }
    const auto kept = m_object.find(key);
    if (kept != m_object.end() && fits(kept.value()))
        kept.value() = value;
}

QJsonObject FieldWriter::keptObject(const char* name) const
{
    return m_object.value(QLatin1String(name)).toObject();
}

QJsonArray FieldWriter::keptArray(const char* name, int size) const
{
    const auto kept = m_object.value(QLatin1String(name)).toArray();
    return kept.size() == size ? kept : QJsonArray();
}

} // namespace standalone
