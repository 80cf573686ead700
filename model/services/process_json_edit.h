#pragma once

#include "model/process_records.h"

#include <string>

/// Model service: reading and writing of tables, variables and templates as JSON.
///
/// Texts are UTF-8 JSON; applet names are in the local 8-bit encoding. What the texts hold is the
/// service's own matter: the editor keeps them, in files and members whose names it knows, and
/// gives them back with other blanks and line ends between the values. The tables are shared by the
/// whole process and are read once. Text that doesn't parse leaves what is there as it was, unless
/// said otherwise, and is reported to the log. GUI thread only.
namespace process_json_edit {

/// The table of default step kinds, "Business/Teststand/defaultStep.json" beside the application:
/// resources/tables/ has the one that the stand-alone service reads. An empty text, for a missing
/// file, loads an empty table and counts as loaded. A service that brings its own table says that
/// it is loaded, and is never called.
bool isDefaultStepLoaded();
void loadDefaultStepJson(const std::string& json);

/// Whether the quick step file was read, by sdk_ui_interface::processedit::loadQuickStepJsonStr.
bool isQucikStepLoaded();

/// The default variables, "defaultVariable.json" beside that table: global ones that every project
/// has. They are locked.
bool isDefaultGlobalVarLoaded();
void loadDefaultVariable(const std::string& json);

/// The user's global variables, "globalVariable.json" in the project's folder, which
/// sdk_ui_interface::processedit::saveGlobalVarJsonStr writes.
bool isUserGlobalVarLoaded();
void loadGlobalVariable(const std::string& json);

/// Whether the template file was read, by sdk_ui_interface::processedit::loadTemplateJsonStr.
bool isTempldateLoaded();

/// The variables of the applet and of its sequences, one JSON object; "{}" for an unknown applet.
/// The member "logicvar" of the applet's document.
std::string generateAppAndSequenceVariableJson(const std::string& appName);

/// Replaces the variables of the applet and of its sequences. Of a text that breaks off, what
/// stands before the fault is read; one that holds nothing before it leaves what is there.
void loadAppVariableJson(const std::string& appName, const std::string& json);

/// One template to JSON and back. A text that is no template gives a record with an empty id.
std::string generateOneTemplateJsonStr(const processTemplateInfo& info);
processTemplateInfo readOneTemplateJsonStr(const std::string& json);

} // namespace process_json_edit
