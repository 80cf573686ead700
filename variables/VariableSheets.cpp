#include "variables/VariableSheets.h"

#include "model/applet_name.h"
#include "model/services/process_edit.h"
#include "variables/VariablePanelTexts.h"
#include "variables/varStandModel.h"
#include "variables/variable_rows.h"

VariableSheets::VariableSheets(QObject* parent) : QObject(parent) {}

varStandModel* VariableSheets::sheet(const QString& sequenceId)
{
    Sheet& sheet = m_sheets[sequenceId];
    if (!sheet.model) {
        sheet.model = new varStandModel(this);
        sheet.model->setHorizontalHeaderLabels(
            {VariablePanelTexts::tr("名称"), VariablePanelTexts::tr("值"),
             VariablePanelTexts::tr("类型"), VariablePanelTexts::tr("备注")});
        connect(sheet.model, &varStandModel::dropEnd, this, &VariableSheets::dropEnd);
    }
    if (sheet.isOutdated) {
        sheet.isOutdated = false;
        fill(sheet.model, sequenceId);
    }
    return sheet.model;
}

void VariableSheets::setOutdated(const QStringList& sequenceIds)
{
    for (const QString& id : sequenceIds) {
        const auto sheet = m_sheets.find(id);
        if (sheet != m_sheets.end())
            sheet->isOutdated = true;
    }
}

bool VariableSheets::isOutdated(const QString& sequenceId) const
{
    const auto sheet = m_sheets.find(sequenceId);
    return sheet != m_sheets.end() && sheet->isOutdated;
}

void VariableSheets::remove(const QString& sequenceId)
{
    delete m_sheets.take(sequenceId).model;
}

// The header stays, and with it the widths of the columns.
void VariableSheets::fill(varStandModel* model, const QString& sequenceId) const
{
    const std::string appName = appletNameBytes(m_appName);
    model->removeRows(0, model->rowCount());
    // A group has its children before the model has it: one insertion for all of them.
    model->appendRow(variable_rows::makeGroup(
        VariablePanelTexts::tr("序列变量"), SequenceVariable,
        process_edit::getAllSequenceVariable(appName, sequenceId.toStdString())));
    model->appendRow(variable_rows::makeGroup(VariablePanelTexts::tr("流程变量"), ProcessVariable,
                                              process_edit::getAllCAppletVariable(appName)));
    model->appendRow(variable_rows::makeGroup(VariablePanelTexts::tr("全局变量"), GlobalVariable,
                                              process_edit::getAllGlobalVariable()));
}

#include "moc_VariableSheets.cpp"
