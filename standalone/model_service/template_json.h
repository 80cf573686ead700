#pragma once

#include "model/process_records.h"

#include <QJsonObject>

namespace standalone {

class LoadReport;

/// One template to JSON and back. A template's sequences stand in it as in a document, with their
/// blocks. Reading gives an empty id for an object that is no template.
QJsonObject writeTemplate(const processTemplateInfo& info);
processTemplateInfo readTemplate(const QJsonObject& object, LoadReport& report,
                                 const QString& where);

} // namespace standalone
