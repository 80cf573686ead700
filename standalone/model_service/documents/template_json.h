#pragma once

#include "model/process_records.h"
#include "standalone/model_service/json/JsonTree.h"

#include <string>

namespace standalone {

class DocumentPlace;
class LoadReport;

/// One template to JSON and back. A template's sequences stand in it as in a document, with their
/// blocks. Reading gives an empty id for an object that is no template.
std::string writeTemplate(const processTemplateInfo& info);
processTemplateInfo readTemplate(const JsonValue& object, LoadReport& report,
                                 const DocumentPlace& where);

} // namespace standalone
