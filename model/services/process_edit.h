#pragma once

#include "model/BaseStepProperty.h"
#include "model/process_records.h"

#include <string>
#include <vector>

/// Model service: variables, step kinds, templates, and the marks of the compile path.
///
/// Applet names are in the local 8-bit encoding, also where they stand as the owner of variables or
/// of custom kinds; everything else is UTF-8, uuids and ids too. An id that nothing bears gives an
/// empty record or does nothing. Records are copies. GUI thread only.
namespace process_edit {

// Variables --------------------------------------------------------------------------------

/// Makes a variable of type s32 with a name that no variable in sight bears; returns its uuid.
/// @p ownerId is the sequence's id (UTF-8), the applet's name (local 8-bit), or empty, by scope.
/// Empty on failure.
std::string addVariable(const std::string& appName, processVariableType scope,
                        const std::string& ownerId);

/// One variable of any scope; a record with an empty uuid if there is none.
processVariable getVariable(const std::string& uuid);

/// A copy for the clipboard: the same content without uuid.
processVariable copyVariable(const std::string& uuid);

/// Writes a variable back by its uuid. @p scope is the scope it stands in.
void updateVariable(const std::string& appName, const processVariable& variable, int scope);

/// Adds a copied variable to @p scope under its ownerId; fills in its uuid, and a name that no
/// other variable in sight bears.
void pasteVariable(const std::string& appName, processVariable& variable, int scope);

void removeVariables(const std::string& appName, std::vector<std::string> uuids);
/// Drops the variables of the applet and of all its sequences, not the global ones.
void removeAllVarByAppName(const std::string& appName);
void removeAllVarBySequenceId(const std::string& appName, const std::string& sequenceId);

/// The variables of one scope in their order; the default ones come first among the global.
std::vector<processVariable> getAllGlobalVariable();
std::vector<processVariable> getAllCAppletVariable(const std::string& appName);
std::vector<processVariable> getAllSequenceVariable(const std::string& appName,
                                                    const std::string& sequenceId);

// Compile path -------------------------------------------------------------------------------

/// Marks the applet as changed: the next compile is not skipped.
void appNeedUpdate(const std::string& appName);
/// Records a successful compile; clears the mark of appNeedUpdate.
void setCompileSucessState(const std::string& appName);

/// True when the sequence's nested calls come back to a sequence that is being called.
bool isHaveSequenceLoop(const std::string& appName, const std::string& sequenceId);
/// True when a variable of a non-basic type is in sight of the sequence and used by it.
bool isHaveStuVar(const std::string& appName, const std::string& sequenceId);
/// Reads the system variables again that the sequence's blocks hold data of.
void updateProcessSysVar(const std::string& appName, const std::string& sequenceId);

// Blocks and step kinds ------------------------------------------------------------------------

/// Moves a block within its sequence: under @p parentUuid, which is a block's uuid or a flow's
/// "0", "1" or "2", to @p index among its new siblings, counted without the block itself. An index
/// outside means the end. A move under the block itself is refused.
void updateProcessInfoIndex(const std::string& appName, const std::string& sequenceId,
                            const std::string& blockUuid, const std::string& parentUuid, int index);

/// A kind of the default table, at any depth; a record with an empty name if there is none.
BaseStepProperty getDefaultBaseStepProperty(logicBlockType baseType, int subType);
/// The default table: its top records, folders with their kinds as children.
std::vector<BaseStepProperty> getAllDefaultBaseStepProperty();

// Custom kinds: what a host adds to the palette of one applet; a diagnostic step is always of one.
// The owner is the applet's name. A list belongs to the host: it goes along when the applet is
// renamed, and stays till removeAllCustomStepProperty, also when the applet or its widget goes. The
// editor calls that when its host asks for it (resetCustomStepList, clearCAppletData) and never by
// itself.

/// A kind of an owner's custom list, at any depth, by step type or by name; an empty name if there
/// is none. Of equal ones the first.
BaseStepProperty getCustomBaseStepProperty(const std::string& owner, logicBlockType baseType,
                                           int subType);
BaseStepProperty getCustomBaseStepProperty(const std::string& owner, logicBlockType baseType,
                                           const std::string& name);
/// Appends to the owner's list, equal ones too. The records are copied.
void addCustomStepProperty(const std::string& owner, std::vector<BaseStepProperty> properties);
void removeAllCustomStepProperty(const std::string& owner);

// Templates --------------------------------------------------------------------------------------

bool isHaveTemplateInfo(const std::string& id);
processTemplateInfo getProcessTemplateByID(const std::string& id);
/// Drops every template; with @p keepLoadedMark clear the file counts as not read afterwards.
void removeAllProcessTemplate(bool keepLoadedMark);

} // namespace process_edit
