#include "standalone/model_service/FieldReader.h"

#include "standalone/model_service/json_values.h"

#include <algorithm>

namespace standalone {

FieldReader::FieldReader(const QJsonObject& object, LoadReport& report, const QString& where)
    : m_object(object), m_report(report), m_where(where)
{
}

void FieldReader::field(const char* name, std::string& value, const char* standard)
{
    const auto found = member(name, isText);
    value = found.isUndefined() ? standard : textOf(found);
}

void FieldReader::field(const char* name, bool& value, bool standard)
{
    value = member(name, isFlag).toBool(standard);
}

void FieldReader::field(const char* name, int& value, int standard)
{
    value = member(name, isWhole<int>).toInt(standard);
}

void FieldReader::field(const char* name, std::uint32_t& value, std::uint32_t standard)
{
    value = static_cast<std::uint32_t>(member(name, isWhole<std::uint32_t>).toDouble(standard));
}

bool FieldReader::takeObject(const char* name, QJsonObject& object)
{
    const auto found = member(name, [](const auto& v) { return v.isObject(); });
    object = found.toObject();
    return found.isObject();
}

bool FieldReader::takeArray(const char* name, QJsonArray& array)
{
    const auto found = member(name, [](const auto& v) { return v.isArray(); });
    array = found.toArray();
    return found.isArray();
}

bool FieldReader::takeObjects(const char* name, QJsonArray& array)
{
    const auto found = member(name, [](const auto& v) {
        const auto items = v.toArray();
        return v.isArray() && std::all_of(items.begin(), items.end(),
                                          [](const auto& item) { return item.isObject(); });
    });
    array = found.toArray();
    return found.isArray();
}

QJsonValue FieldReader::member(const char* name, bool (*fits)(const QJsonValue&))
{
    const auto found = m_object.constFind(QLatin1String(name));
    if (found == m_object.constEnd())
        return QJsonValue(QJsonValue::Undefined);
    const QJsonValue value = found.value();
    if (!fits(value)) {
        m_report.add(placeOf(name), QStringLiteral("成员类型错误"));
        return QJsonValue(QJsonValue::Undefined);
    }
    m_taken.append(name);
    return value;
}

void FieldReader::keep(const char* name, const QJsonObject& object)
{
    if (!object.isEmpty())
        m_kept.insert(QLatin1String(name), object);
}

void FieldReader::keep(const char* name, const QJsonArray& array)
{
    m_kept.insert(QLatin1String(name), array);
}

QJsonObject FieldReader::rest() const
{
    if (m_taken.size() == m_object.size())
        return m_kept;
    QJsonObject rest = m_object;
    for (const char* name : m_taken)
        rest.remove(QLatin1String(name));
    for (auto it = m_kept.begin(); it != m_kept.end(); ++it)
        rest.insert(it.key(), it.value());
    return rest;
}

QString FieldReader::placeOf(const char* name) const
{
    return m_where.isEmpty() ? QLatin1String(name)
                             : m_where + QLatin1Char('.') + QLatin1String(name);
}

} // namespace standalone
