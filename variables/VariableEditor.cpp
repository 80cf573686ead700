#include "variables/VariableEditor.h"

#include "edits/DocumentEdits.h"
#include "model/applet_name.h"
#include "model/services/log.h"
#include "model/services/process_edit.h"
#include "variables/VariableClipboard.h"
#include "variables/varStandModel.h"
#include "variables/variable_rows.h"
#include "variables/variable_rules.h"

#include <map>

using namespace variable_rows;

VariableEditor::VariableEditor(QObject* parent) : QObject(parent) {}

void VariableEditor::setCAppletName(const QString& appName)
{
    m_appName = appletNameBytes(appName);
}

void VariableEditor::setSheet(varStandModel* sheet, const QString& sequenceId)
{
    m_sheet = sheet;
    m_sequenceId = sequenceId.toStdString();
}

void VariableEditor::Reach::add(processVariableType scope)
{
    isShared = isShared || scope != SequenceVariable;
    isGlobal = isGlobal || scope == GlobalVariable;
}

void VariableEditor::Reach::add(processVariableType scope, const std::string& name)
{
    add(scope);
    names.append(QString::fromStdString(name));
}

void VariableEditor::tell(const Reach& reach)
{
    if (reach.isShared)
        emit sigShared(reach.isGlobal, reach.names);
    emit sigModified();
}

void VariableEditor::tellGone(const QStringList& names, const QString& newName,
                              processVariableType scope)
{
    if (!names.isEmpty())
        emit sigNamesGone(names, newName,
                          scope == SequenceVariable ? QString::fromStdString(m_sequenceId)
                                                    : QString());
}

std::string VariableEditor::ownerOf(processVariableType scope) const
{
    return variable_rules::ownerOf(scope, m_appName, m_sequenceId);
}

std::string VariableEditor::addToService(processVariableType scope) const
{
    const std::string uuid =
        DocumentEdits::instance().addVariable(m_appName, scope, ownerOf(scope));
    if (uuid.empty())
        sdk_ui_interface::log::log_error(QStringLiteral("[流程编辑] 无法添加变量"));
    return uuid;
}

QModelIndex VariableEditor::add(const QModelIndex& group)
{
    const processVariableType scope = scopeOf(group);
    const std::string uuid = addToService(scope);
    if (uuid.empty())
        return QModelIndex();
    const int end = m_sheet->rowCount(group);
    insertRows(group, end, {process_edit::getVariable(uuid)});
    Reach reach; // of no step yet: nothing can use a name that has just been made up
    reach.add(scope);
    tell(reach);
    return m_sheet->index(end, NameColumn, group);
}

void VariableEditor::remove(const QModelIndexList& rows)
{
    if (rows.isEmpty())
        return;
    Reach reach;
    std::vector<std::string> uuids;
    std::map<processVariableType, QStringList> names;
    for (const QModelIndex& row : rows) {
        uuids.push_back(uuidOf(row).toStdString());
        reach.add(scopeOf(row), row.data().toString().toStdString());
        names[scopeOf(row)].append(row.data().toString());
    }
    DocumentEdits::instance().removeVariables(m_appName, uuids);
    variable_rows::remove(*m_sheet, rows);
    tell(reach);
    for (const auto& [scope, ofScope] : names)
        tellGone(ofScope, QString(), scope);
}

void VariableEditor::removeAll(const QModelIndex& group)
{
    QModelIndexList rows;
    for (int row = m_sheet->rowCount(group) - 1; row >= 0; --row) {
        const QModelIndex index = m_sheet->index(row, NameColumn, group);
        if (!process_edit::getVariable(uuidOf(index).toStdString()).isLocked)
            rows.append(index);
    }
    remove(rows);
}

QItemSelection VariableEditor::paste(const VariableClipboard& clipboard, const QModelIndex& group,
                                     int row)
{
    const processVariableType scope = scopeOf(group);
    const auto pasted = clipboard.paste(m_appName, scope, ownerOf(scope));
    if (pasted.empty())
        return QItemSelection();
    const QItemSelection rows = insertRows(group, row, pasted);
    Reach reach;
    for (const processVariable& variable : pasted)
        reach.add(scope, variable.name);
    tell(reach);
    return rows;
}

QItemSelection VariableEditor::move(const QStringList& uuids, const QModelIndex& group, int row)
{
    const processVariableType scope = scopeOf(group);
    const DocumentEdits::Act act;
    Reach reach;
    std::vector<processVariable> moved;
    for (const QString& uuid : uuids) {
        processVariable variable = process_edit::getVariable(uuid.toStdString());
        if (variable.uuid.empty())
            continue;
        reach.add(variable.scope);
        reach.add(scope, variable.name);
        variable.scope = scope;
        variable.ownerId = ownerOf(scope);
        DocumentEdits::instance().updateVariable(m_appName, variable, scope);
        moved.push_back(process_edit::getVariable(variable.uuid));
    }
    if (moved.empty())
        return QItemSelection();
    variable_rows::remove(*m_sheet, find(*m_sheet, uuids));
    const QItemSelection rows = insertRows(group, qBound(0, row, m_sheet->rowCount(group)), moved);
    tell(reach);
    return rows;
}

processVariable VariableEditor::store(const processVariable& variable)
{
    DocumentEdits::instance().updateVariable(m_appName, variable, variable.scope);
    const processVariable stored = process_edit::getVariable(variable.uuid);
    if (m_sheet) {
        for (const QModelIndex& row : find(*m_sheet, {QString::fromStdString(variable.uuid)}))
            variable_rows::write(*m_sheet, row, stored);
    }
    return stored;
}

QItemSelection VariableEditor::insertRows(const QModelIndex& group, int row,
                                          const std::vector<processVariable>& variables)
{
    QStandardItem* parent = m_sheet->itemFromIndex(group);
    const int first = row;
    for (const processVariable& variable : variables)
        parent->insertRow(row++, makeVariable(variable));
    return QItemSelection(m_sheet->index(first, NameColumn, group),
                          m_sheet->index(row - 1, ColumnCount - 1, group));
}

#include "moc_VariableEditor.cpp"
