#pragma once

#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <string>

namespace standalone {

class LoadReport;

/// Parses a JSON text of one object. A blank text is an empty object; a text that is no object is
/// reported, and false returned.
bool parseObject(const QByteArray& json, LoadReport& report, QJsonObject& object);
bool parseObject(const std::string& json, LoadReport& report, QJsonObject& object);

/// On one line, or indented for files that people compare. Members are in alphabetical order.
QString toJson(const QJsonObject& object, QJsonDocument::JsonFormat format);

} // namespace standalone
