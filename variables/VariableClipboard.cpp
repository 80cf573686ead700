#include "variables/VariableClipboard.h"

#include "edits/DocumentEdits.h"
#include "model/services/process_edit.h"

void VariableClipboard::copy(const QStringList& uuids)
{
    m_variables.clear();
    for (const QString& uuid : uuids)
        m_variables.push_back(process_edit::copyVariable(uuid.toStdString()));
}

std::vector<processVariable> VariableClipboard::paste(const std::string& appName,
                                                      processVariableType scope,
                                                      const std::string& ownerId) const
{
    const DocumentEdits::Act act;
    std::vector<processVariable> pasted;
    for (processVariable variable : m_variables) {
        variable.ownerId = ownerId;
        DocumentEdits::instance().pasteVariable(appName, variable, scope);
        if (!variable.uuid.empty())
            pasted.push_back(variable);
    }
    return pasted;
}
