#include "variables/value_rules.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <limits>

namespace value_rules {

namespace {

constexpr const char* Unsigned = "^(0|[1-9]\\d*)$";
constexpr const char* Signed = "^(-[1-9]\\d*|0|[1-9]\\d*)$";
constexpr const char* Real = "^-?\\d+(\\.\\d+)?$";
constexpr const char* UnsignedArray = "^$|^(0|[1-9]\\d*)(,(0|[1-9]\\d*))*,?$";
constexpr const char* SignedArray = "^$|^((0|-?[1-9]\\d*))(,((0|-?[1-9]\\d*)))*,?$";
constexpr const char* RealArray = "^-?(0|([1-9]\\d*))(\\.\\d*)?(,-?(0|([1-9]\\d*))(\\.\\d*)?)*,?$";

struct Rule
{
    const char* keyword;
    const char* pattern;
    bool isArray;
    qint64 lower; ///< both 0: no range
    qint64 upper;
};

template <class Number> constexpr Rule rule(const char* keyword, const char* pattern, bool isArray)
{
    return {keyword, pattern, isArray, std::numeric_limits<Number>::min(),
            std::numeric_limits<Number>::max()};
}

constexpr Rule rules[] = {
    rule<quint8>("u8", Unsigned, false),        rule<quint16>("u16", Unsigned, false),
    rule<quint32>("u32", Unsigned, false),      {"u64", Unsigned, false, 0, 0},
    rule<qint8>("s8", Signed, false),           rule<qint16>("s16", Signed, false),
    rule<qint32>("s32", Signed, false),         rule<qint64>("s64", Signed, false),
    rule<qint64>("float", Real, false),         rule<qint64>("double", Real, false),
    rule<quint8>("u8*", UnsignedArray, true),   rule<quint16>("u16*", UnsignedArray, true),
    rule<quint32>("u32*", UnsignedArray, true), {"u64*", UnsignedArray, true, 0, 0},
    rule<qint8>("s8*", SignedArray, true),      rule<qint16>("s16*", SignedArray, true),
    rule<qint32>("s32*", SignedArray, true),    rule<qint64>("s64*", SignedArray, true),
    rule<qint64>("double*", RealArray, true),
};

const Rule* ruleOf(const QString& keyword)
{
    const auto* found = std::find_if(std::begin(rules), std::end(rules), [&](const Rule& rule) {
        return keyword == QLatin1String(rule.keyword);
    });
    return found == std::end(rules) ? nullptr : found;
}

bool isText(const QString& keyword)
{
    return keyword == QLatin1String("string") || keyword == QLatin1String("char*");
}

bool isWithin(const Rule& rule, const QString& number)
{
    const qint64 value = number.toLongLong();
    return value >= rule.lower && value <= rule.upper;
}

QString translated(const char* text)
{
    return QCoreApplication::translate("VarValueLineEdit", text);
}

Verdict verdict(bool isAccepted)
{
    return isAccepted ? Verdict::Accepted : Verdict::Refused;
}

} // namespace

bool isArray(const QString& keyword)
{
    const Rule* rule = ruleOf(keyword);
    return rule && rule->isArray;
}

QString pattern(const QString& keyword)
{
    const Rule* rule = ruleOf(keyword);
    return rule ? QString::fromLatin1(rule->pattern) : QString();
}

Verdict judge(const QString& text, const QString& keyword, int length)
{
    if (isText(keyword))
        return verdict(length < 0 || text.size() <= length);
    const Rule* rule = ruleOf(keyword);
    if (!rule || (rule->lower == 0 && rule->upper == 0))
        return Verdict::Kept;
    if (!rule->isArray)
        return verdict(isWithin(*rule, text));
    const QStringList elements = text.split(QLatin1Char(','));
    if (length >= 0 && elements.size() > length)
        return Verdict::Refused;
    return verdict(std::all_of(elements.begin(), elements.end(), [rule](const QString& element) {
        return isWithin(*rule, element);
    }));
}

QString refusal(const QString& text, const QString& keyword, int length)
{
    if (judge(text, keyword, length) != Verdict::Refused)
        return QString();
    if (isText(keyword))
        return translated("最多 %1 个字符").arg(length);
    const Rule& rule = *ruleOf(keyword);
    if (rule.isArray && length >= 0 && text.count(QLatin1Char(',')) >= length)
        return translated("最多 %1 个元素").arg(length);
    const QString range = rule.isArray ? translated("%1 每个元素的取值范围是 %2 到 %3")
                                       : translated("%1 的取值范围是 %2 到 %3");
    return range.arg(keyword).arg(rule.lower).arg(rule.upper);
}

QString completed(const QString& text, const QString& keyword)
{
    return isArray(keyword) && text.endsWith(QLatin1Char(',')) ? text + QLatin1Char('0') : text;
}

} // namespace value_rules
