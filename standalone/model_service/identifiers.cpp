#include "standalone/model_service/identifiers.h"

#include <QRegularExpression>
#include <QUuid>

namespace standalone {

namespace {
constexpr int MaxNameLength = 20;
}

std::string newUuid()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString();
}

int flowOfParentId(const std::string& id)
{
    return id.size() == 1 && id[0] >= '0' && id[0] <= '2' ? id[0] - '0' : -1;
}

bool isBlockUuid(const std::string& id)
{
    return !id.empty() && flowOfParentId(id) < 0;
}

QString toText(const std::string& utf8)
{
    return QString::fromStdString(utf8);
}

std::string toUtf8(const QString& text)
{
    return text.toStdString();
}

QString toAppName(const std::string& local8Bit)
{
    return QString::fromLocal8Bit(local8Bit.data(), static_cast<int>(local8Bit.size()));
}

std::string toLocalName(const QString& appName)
{
    return appName.toLocal8Bit().toStdString();
}

QString freeName(const QString& wanted, const std::function<bool(const QString&)>& isTaken)
{
    if (!wanted.isEmpty() && !isTaken(wanted))
        return wanted;
    static const QRegularExpression counted(QStringLiteral("^(.*)_([0-9]{1,6})$"),
                                            QRegularExpression::DotMatchesEverythingOption);
    const auto match = counted.match(wanted);
    const QString base = match.hasMatch() ? match.captured(1) : wanted;
    for (int number = match.hasMatch() ? match.captured(2).toInt() + 1 : 1;; ++number) {
        const QString suffix = QLatin1Char('_') + QString::number(number);
        const QString name = base.left(MaxNameLength - suffix.size()) + suffix;
        if (!isTaken(name))
            return name;
    }
}

} // namespace standalone
