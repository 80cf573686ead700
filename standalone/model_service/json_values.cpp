#include "standalone/model_service/json_values.h"

#include "standalone/model_service/identifiers.h"

#include <QJsonArray>
#include <QStringList>

#include <algorithm>

namespace standalone {

QJsonValue fromText(const std::string& text)
{
    const QString value = toText(text);
    if (!value.contains(QLatin1Char('\n')))
        return value;
    return QJsonArray::fromStringList(value.split(QLatin1Char('\n')));
}

std::string textOf(const QJsonValue& value)
{
    if (value.isString())
        return toUtf8(value.toString());
    QStringList lines;
    for (const auto& line : value.toArray())
        lines.append(line.toString());
    return toUtf8(lines.join(QLatin1Char('\n')));
}

bool isText(const QJsonValue& value)
{
    if (!value.isArray())
        return value.isString();
    const auto lines = value.toArray();
    return std::all_of(lines.begin(), lines.end(), [](const auto& l) { return l.isString(); });
}

bool isFlag(const QJsonValue& value)
{
    return value.isBool();
}

} // namespace standalone
