#include "model/services/process_edit.h"
#include "model/type_tables.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/stores/AppletStore.h"
#include "standalone/model_service/stores/VariableStore.h"
#include "standalone/model_service/stores/compile_marks.h"
#include "standalone/model_service/stores/sequence_usage.h"

#include <algorithm>

using namespace standalone;

namespace process_edit {

namespace {

void markUsersChanged(const std::string& appName, int scope)
{
    if (scope == GlobalVariable)
        markAllChanged();
    if (!appName.empty())
        markChanged(appName);
}

bool isCompositeInUse(const std::vector<processVariable>& variables,
                      const std::unordered_set<std::string>& words)
{
    return std::any_of(variables.begin(), variables.end(), [&](const processVariable& variable) {
        return isCompositeVarType(varTypeFromKeyword(variable.type)) && words.count(variable.name);
    });
}

} // namespace

std::string addVariable(const std::string& appName, processVariableType scope,
                        const std::string& ownerId)
{
    const auto uuid = variableStore().add(appName, scope, ownerId);
    if (!uuid.empty())
        markUsersChanged(appName, scope);
    return uuid;
}

processVariable getVariable(const std::string& uuid)
{
    const auto* variable = variableStore().find(uuid);
    return variable ? *variable : processVariable();
}

processVariable copyVariable(const std::string& uuid)
{
    auto copy = getVariable(uuid);
    copy.uuid.clear();
    return copy;
}

void updateVariable(const std::string& appName, const processVariable& variable, int /*scope*/)
{
    const auto former = getVariable(variable.uuid);
    if (former.uuid.empty())
        return;
    variableStore().update(appName, variable);
    markUsersChanged(appName, former.scope);
    markUsersChanged(appName, variable.scope);
}

void pasteVariable(const std::string& appName, processVariable& variable, int scope)
{
    variableStore().paste(appName, variable, static_cast<processVariableType>(scope));
    markUsersChanged(appName, scope);
}

void removeVariables(const std::string& appName, std::vector<std::string> uuids)
{
    for (const auto& uuid : uuids)
        markUsersChanged(appName, getVariable(uuid).scope);
    variableStore().remove(uuids);
}

void removeAllVarByAppName(const std::string& appName)
{
    variableStore().removeApplet(appName);
}

void removeAllVarBySequenceId(const std::string& appName, const std::string& sequenceId)
{
    variableStore().removeSequence(appName, sequenceId);
    markUsersChanged(appName, SequenceVariable);
}

std::vector<processVariable> getAllGlobalVariable()
{
    return variableStore().globals();
}

std::vector<processVariable> getAllCAppletVariable(const std::string& appName)
{
    return variableStore().ofApplet(appName);
}

std::vector<processVariable> getAllSequenceVariable(const std::string& appName,
                                                    const std::string& sequenceId)
{
    return variableStore().ofSequence(appName, sequenceId);
}

void appNeedUpdate(const std::string& appName)
{
    markChanged(appName);
}

void setCompileSucessState(const std::string& appName)
{
    markCompiled(appName);
}

bool isHaveSequenceLoop(const std::string& appName, const std::string& sequenceId)
{
    const auto* applet = appletStore().find(toAppName(appName));
    return applet && hasCallLoop(*applet, sequenceId);
}

bool isHaveStuVar(const std::string& appName, const std::string& sequenceId)
{
    const auto* applet = appletStore().find(toAppName(appName));
    const auto* sequence = applet ? applet->sequence(sequenceId) : nullptr;
    if (!sequence)
        return false;
    std::unordered_set<std::string> words;
    for (const auto& flow : sequence->flows)
        words.merge(usedWords(flow));
    return isCompositeInUse(getAllSequenceVariable(appName, sequenceId), words) ||
           isCompositeInUse(getAllCAppletVariable(appName), words) ||
           isCompositeInUse(getAllGlobalVariable(), words);
}

void updateProcessSysVar(const std::string& /*appName*/, const std::string& /*sequenceId*/)
{
    // Blocks hold the names of system variables and nothing else of them, so there is no copy here
    // that could be out of date.
}

} // namespace process_edit
