#include "variables/variable_values.h"

#include <QLocale>

#include <cmath>

namespace variable_values {

namespace {

// Without an exponent, which the editors of values refuse, and with as few digits as give the same
// number again.
QString plainNumber(double number)
{
    return std::isfinite(number) ? QString::number(number, 'f', QLocale::FloatingPointShortest)
                                 : QStringLiteral("0");
}

} // namespace

QString normalized(const QString& text, DrelVarType type)
{
    const QString value = text.trimmed();
    switch (type) {
    case DrelChar:
    case DrelS8:
    case DrelS16:
    case DrelS32:
    case DrelS64:
        return QString::number(value.toLongLong());
    case DrelU8:
    case DrelU16:
    case DrelU32:
    case DrelU64:
        return QString::number(value.toULongLong());
    case DrelFloat:
    case DrelDouble:
        return plainNumber(value.toDouble());
    case DrelBool:
        return value == QLatin1String("true") ? value : QStringLiteral("false");
    case DrelString:
    case DrelCharPtr:
        return text.isEmpty() ? QStringLiteral("NULL") : text;
    default:
        return text;
    }
}

} // namespace variable_values
