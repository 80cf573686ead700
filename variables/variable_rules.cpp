#include "variables/variable_rules.h"

#include <QSet>

#include <algorithm>

namespace variable_rules {

namespace {

bool isText(DrelVarType type)
{
    return type == DrelString || type == DrelCharPtr;
}

bool isOffered(DrelVarType type)
{
    switch (type) {
    case DrelU8:
    case DrelS8:
    case DrelU16:
    case DrelS16:
    case DrelU32:
    case DrelS32:
    case DrelU64:
    case DrelS64:
    case DrelDouble:
    case DrelString:
    case DrelU8Ptr:
    case DrelS8Ptr:
    case DrelU16Ptr:
    case DrelS16Ptr:
    case DrelU32Ptr:
    case DrelS32Ptr:
    case DrelU64Ptr:
    case DrelS64Ptr:
    case DrelDoublePtr:
    case DrelCharPtr:
    case DrelCanPtr:
    case DrelUdsPtr:
    case DrelEcuInfoPtr:
    case DrelBigMsgPtr:
    case DrelXcpCanCfg:
    case DrelXcpOdtEntry:
    case DrelXcpOdtEntryPtr:
    case DrelXcpDaqListCfg:
    case DrelXcpTransportLayerCan:
    case DrelXcpProtocolLayerCfg:
    case DrelXcpCalibrationPage:
    case DrelXcpProgramFormat:
        return true;
    default:
        return false;
    }
}

// Never within a character, of which only the first byte isn't 10xxxxxx.
std::string cutToBytes(const std::string& text, std::size_t bytes)
{
    if (text.size() <= bytes)
        return text;
    while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xC0) == 0x80)
        --bytes;
    return text.substr(0, bytes);
}

std::string cutToElements(const std::string& value, int elements)
{
    std::size_t end = 0;
    for (int element = 1; element <= elements; ++element) {
        end = value.find(',', element == 1 ? 0 : end + 1);
        if (end == std::string::npos)
            return value;
    }
    return value.substr(0, end);
}

} // namespace

const QVector<OfferedType>& offeredTypes()
{
    static const QVector<OfferedType> offered = [] {
        QVector<OfferedType> types;
        for (const auto& row : varTypeNames) {
            if (isOffered(row.first) && row.second == varTypeKeyword(row.first))
                types.append({row.first, QString::fromStdString(row.second)});
        }
        return types;
    }();
    return offered;
}

bool mayBeBlank(const QString& keyword)
{
    return isText(varTypeFromKeyword(keyword.toStdString()));
}

bool carriesLength(const QString& keyword)
{
    static const QSet<QString> aliases = {
        QStringLiteral("pchar"),  QStringLiteral("pu8"),     QStringLiteral("ps8"),
        QStringLiteral("pu16"),   QStringLiteral("ps16"),    QStringLiteral("pu32"),
        QStringLiteral("ps32"),   QStringLiteral("pu64"),    QStringLiteral("ps64"),
        QStringLiteral("pfloat"), QStringLiteral("pdouble"), QStringLiteral("pbool")};
    return keyword == QLatin1String("string") || keyword.contains(QLatin1Char('*')) ||
           keyword.contains(QLatin1String("[]")) || aliases.contains(keyword);
}

int greatestLength(const QString& keyword)
{
    constexpr int mostBytes = 256;
    constexpr int mostElements = 64;
    return isText(varTypeFromKeyword(keyword.toStdString())) ? mostBytes : mostElements;
}

std::string cutToLength(const std::string& value, const std::string& keyword, int length)
{
    const DrelVarType type = varTypeFromKeyword(keyword);
    if (isText(type))
        return cutToBytes(value, static_cast<std::size_t>(std::max(length, 0)));
    if (type >= DrelU8Ptr && type <= DrelDoublePtr)
        return cutToElements(value, length);
    return value;
}

std::string ownerOf(processVariableType scope, const std::string& appName,
                    const std::string& sequenceId)
{
    if (scope == SequenceVariable)
        return sequenceId;
    return scope == ProcessVariable ? appName : std::string();
}

} // namespace variable_rules
