#include "variables/VariableSheets.h"

#include "model/applet_name.h"
#include "model/services/process_edit.h"
#include "variables/VariablePanelTexts.h"
#include "variables/varStandModel.h"
#include "variables/variable_rows.h"

#include <algorithm>
#include <iterator>

namespace {

// The header stays, and with it the widths of the columns.
void fill(varStandModel* model, const std::vector<processVariable>& ofSequence,
          const std::vector<processVariable>& ofProcess)
{
    model->removeRows(0, model->rowCount());
    // A group has its children before the model has it: one insertion for all of them.
    model->appendRow(
        variable_rows::makeGroup(VariablePanelTexts::tr("序列变量"), SequenceVariable, ofSequence));
    model->appendRow(
        variable_rows::makeGroup(VariablePanelTexts::tr("流程变量"), ProcessVariable, ofProcess));
    model->appendRow(variable_rows::makeGroup(VariablePanelTexts::tr("全局变量"), GlobalVariable,
                                              process_edit::getAllGlobalVariable()));
}

} // namespace

VariableSheets::VariableSheets(QObject* parent) : QObject(parent) {}

varStandModel* VariableSheets::sheet(const QString& sequenceId)
{
    Sheet& sheet = m_sheets[sequenceId];
    if (!sheet.model) {
        sheet.model = makeModel();
        connect(sheet.model, &varStandModel::dropEnd, this, &VariableSheets::dropEnd);
    }
    if (sheet.isOutdated) {
        sheet.isOutdated = false;
        const std::string appName = appletNameBytes(m_appName);
        fill(sheet.model, process_edit::getAllSequenceVariable(appName, sequenceId.toStdString()),
             process_edit::getAllCAppletVariable(appName));
    }
    return sheet.model;
}

varStandModel* VariableSheets::templateSheet(const processTemplateInfo& owner,
                                             const QString& sequenceId)
{
    if (!m_templateModel)
        m_templateModel = makeModel();
    std::vector<processVariable> own;
    std::copy_if(owner.sequenceVariables.begin(), owner.sequenceVariables.end(),
                 std::back_inserter(own),
                 [id = sequenceId.toStdString()](const processVariable& variable) {
                     return variable.ownerId == id;
                 });
    fill(m_templateModel, own, owner.processVariables);
    return m_templateModel;
}

varStandModel* VariableSheets::makeModel()
{
    auto* model = new varStandModel(this);
    model->setHorizontalHeaderLabels({VariablePanelTexts::tr("名称"), VariablePanelTexts::tr("值"),
                                      VariablePanelTexts::tr("类型"),
                                      VariablePanelTexts::tr("备注")});
    return model;
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

#include "moc_VariableSheets.cpp"
