// How a VariableEditor changes what a variable holds: its cells, its length, and what other parts
// give it.

#include "variables/VariableEditor.h"

#include "edits/DocumentEdits.h"
#include "model/services/process_edit.h"
#include "variables/varStandModel.h"
#include "variables/variable_rows.h"
#include "variables/variable_rules.h"
#include "variables/variable_values.h"

using namespace variable_rows;

namespace {

bool haveSameCells(const processVariable& a, const processVariable& b)
{
    return a.name == b.name && a.type == b.type && a.value == b.value &&
           a.description == b.description;
}

} // namespace

void VariableEditor::storeCell(const QModelIndex& cell)
{
    if (!m_sheet)
        return;
    const QModelIndex row = rowOf(cell);
    const processVariable former = process_edit::getVariable(uuidOf(row).toStdString());
    if (former.uuid.empty())
        return;
    processVariable variable = former;
    variable.name = textOf(row, NameColumn).toStdString();
    variable.value = textOf(row, ValueColumn).toStdString();
    variable.type = textOf(row, TypeColumn).toStdString();
    variable.description = textOf(row, RemarkColumn).toStdString();
    if (variable.type != former.type)
        variable.value = "0";
    if (variable.value.empty() && !variable_rules::mayBeBlank(textOf(row, TypeColumn)))
        variable.value = former.value;
    if (haveSameCells(variable, former)) {
        variable_rows::write(*m_sheet, row, former);
        return;
    }
    const DocumentEdits::Act act;
    const processVariable stored = store(variable);
    Reach reach;
    reach.add(stored.scope, stored.name);
    tell(reach);
    if (stored.name != former.name)
        tellGone({QString::fromStdString(former.name)}, QString::fromStdString(stored.name),
                 stored.scope);
}

void VariableEditor::setLength(processVariable variable, int length)
{
    variable.value = variable_rules::cutToLength(variable.value, variable.type, length);
    variable.length = length;
    const DocumentEdits::Act act;
    store(variable);
    Reach reach;
    reach.add(variable.scope, variable.name);
    tell(reach);
}

QString VariableEditor::variableInSight(const std::string& name) const
{
    for (const auto& variables :
         {process_edit::getAllGlobalVariable(), process_edit::getAllCAppletVariable(m_appName),
          process_edit::getAllSequenceVariable(m_appName, m_sequenceId)}) {
        for (const processVariable& variable : variables) {
            if (variable.name == name)
                return QString::fromStdString(variable.uuid);
        }
    }
    return QString();
}

void VariableEditor::give(const QString& name, const QString& value, DrelVarType type,
                          processVariableType scope, bool forceNew)
{
    const DocumentEdits::Act act;
    std::string uuid = forceNew ? std::string() : variableInSight(name.toStdString()).toStdString();
    const bool isNew = uuid.empty();
    if (isNew)
        uuid = addToService(scope);
    processVariable variable = process_edit::getVariable(uuid);
    if (variable.uuid.empty())
        return;
    variable.name = name.toStdString();
    variable.type = varTypeKeyword(type);
    variable.value = variable_values::normalized(value, type).toStdString();
    const processVariable stored = store(variable);
    if (isNew && m_sheet) {
        const QModelIndex group = m_sheet->index(stored.scope, NameColumn);
        insertRows(group, m_sheet->rowCount(group), {stored});
    }
    Reach reach;
    reach.add(stored.scope, stored.name);
    tell(reach);
}
