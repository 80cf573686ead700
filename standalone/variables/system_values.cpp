#include "standalone/variables/system_values.h"

#include <QRegularExpression>
#include <QStringList>

#include <cmath>
#include <limits>

namespace system_values {

namespace {

/// Decimal or hexadecimal, never octal.
int baseOf(const QString& text)
{
    const QString digits = text.startsWith(u'-') || text.startsWith(u'+') ? text.mid(1) : text;
    return digits.startsWith(QStringLiteral("0x"), Qt::CaseInsensitive) ? 16 : 10;
}

template <typename Number> bool isSigned(const QString& text)
{
    bool isNumber = false;
    const qlonglong number = text.toLongLong(&isNumber, baseOf(text));
    return isNumber && number >= std::numeric_limits<Number>::min() &&
           number <= std::numeric_limits<Number>::max();
}

template <typename Number> bool isUnsigned(const QString& text)
{
    bool isNumber = false;
    const qulonglong number = text.toULongLong(&isNumber, baseOf(text));
    return isNumber && number <= std::numeric_limits<Number>::max();
}

bool isReal(const QString& text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber && std::isfinite(number);
}

bool allFit(const QString& value, bool (*fitsOne)(const QString&))
{
    const QStringList parts = value.split(u',');
    for (const QString& part : parts) {
        if (!fitsOne(part.trimmed()))
            return false;
    }
    return true;
}

} // namespace

bool isName(const QString& name)
{
    static const QRegularExpression pattern(QStringLiteral("^[a-zA-Z_][a-zA-Z0-9_]{0,63}\\z"));
    return pattern.match(name).hasMatch();
}

bool fits(DataCategoryType category, const QString& value)
{
    const QString text = value.trimmed();
    if (text.isEmpty())
        return true;
    switch (category) {
    case SignedCategory:
        return isSigned<qint32>(text);
    case UnsignedCategory:
        return isUnsigned<quint32>(text);
    case Signed64Category:
        return isSigned<qint64>(text);
    case Unsigned64Category:
        return isUnsigned<quint64>(text);
    case DoubleCategory:
        return isReal(text);
    case ByteArrayCategory:
        return allFit(text, isUnsigned<quint8>);
    case SignedArrayCategory:
        return allFit(text, isSigned<qint32>);
    case Signed64ArrayCategory:
        return allFit(text, isSigned<qint64>);
    case DoubleArrayCategory:
        return allFit(text, isReal);
    case TextCategory:
    case NoCategory:
        break;
    }
    return true;
}

} // namespace system_values
