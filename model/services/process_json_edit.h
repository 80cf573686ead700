#pragma once

#include "model/process_records.h"

#include <string>

/// Model service: reading and writing of tables, variables and templates as JSON.
///
/// Texts are UTF-8 JSON unless said otherwise; applet names are in the local 8-bit encoding. The
/// tables are shared by the whole process and are read once. Text that doesn't parse leaves what
/// is there as it was and is reported to the log. GUI thread only.
namespace process_json_edit {

/// The table of default step kinds. An empty text loads an empty table and counts as loaded.
bool isDefaultStepLoaded();
void loadDefaultStepJson(const std::string& json);

/// Whether the quick step file was read, by sdk_ui_interface::processedit::loadQuickStepJsonStr.
bool isQucikStepLoaded();

/// The default variables: global ones that every project has. They are locked.
bool isDefaultGlobalVarLoaded();
void loadDefaultVariable(const std::string& json);

/// The user's global variables of the project.
bool isUserGlobalVarLoaded();
void loadGlobalVariable(const std::string& json);

/// Whether the template file was read, by sdk_ui_interface::processedit::loadTemplateJsonStr.
bool isTempldateLoaded();

/// The variables of the applet and of its sequences; "{}" for an unknown applet.
std::string generateAppAndSequenceVariableJson(const std::string& appName);

/// Replaces the variables of the applet and of its sequences.
void loadAppVariableJson(const std::string& appName, const std::string& json);

/// One template to JSON and back. A text that is no template gives a record with an empty id.
std::string generateOneTemplateJsonStr(const processTemplateInfo& info);
processTemplateInfo readOneTemplateJsonStr(const std::string& json);

} // namespace process_json_edit
