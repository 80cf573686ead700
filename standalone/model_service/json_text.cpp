#include "standalone/model_service/json_text.h"

#include "standalone/model_service/LoadReport.h"

namespace standalone {

bool parseObject(const QByteArray& json, LoadReport& report, QJsonObject& object)
{
    object = {};
    if (json.trimmed().isEmpty())
        return true;
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        report.add({}, QStringLiteral("json解析错误: %1 (位置 %2)")
                           .arg(error.errorString())
                           .arg(error.offset));
        return false;
    }
    if (!document.isObject()) {
        report.add({}, QStringLiteral("json不是对象"));
        return false;
    }
    object = document.object();
    return true;
}

bool parseObject(const std::string& json, LoadReport& report, QJsonObject& object)
{
    return parseObject(QByteArray::fromRawData(json.data(), static_cast<int>(json.size())), report,
                       object);
}

QString toJson(const QJsonObject& object, QJsonDocument::JsonFormat format)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(format));
}

} // namespace standalone
