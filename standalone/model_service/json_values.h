#pragma once

#include <QJsonValue>

#include <cmath>
#include <limits>
#include <string>

namespace standalone {

/// A text as a document holds it: a string, or with line ends an array of its lines, so that code
/// can be compared line by line.
QJsonValue fromText(const std::string& text);
std::string textOf(const QJsonValue& value);

/// Whether a value can be read as a field of a type.
bool isText(const QJsonValue& value);
bool isFlag(const QJsonValue& value);
template <class Integer> bool isWhole(const QJsonValue& value)
{
    const double number = value.toDouble(0.5);
    return number == std::floor(number) && number >= std::numeric_limits<Integer>::min() &&
           number <= std::numeric_limits<Integer>::max();
}

} // namespace standalone
