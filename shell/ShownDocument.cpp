#include "shell/ShownDocument.h"

#include "edits/DocumentEdits.h"
#include "model/services/processedit.h"
#include "panels/wgtCommonControl.h"
#include "panels/wgtGeneralSetting.h"
#include "shell/ProcessEditParts.h"
#include "shell/bridge/LogicMaster.h"
#include "shell/documents/variable_use.h"

#include <QScopedValueRollback>

namespace processedit = sdk_ui_interface::processedit;

void ShownDocument::fill(const QString& appName)
{
    m_parts.ui.sequenceWidget->clearRows();
    m_parts.ui.center_wgt->removeAllModelSlot();
    m_parts.ui.widget_para->removeAllModels();
    if (processedit::getAllSequenceByAppName(appName).empty())
        processedit::createSeuqence(appName, QStringLiteral("Sequence_0"));
    const auto sequences = processedit::getAllSequenceByAppName(appName);
    if (sequences.empty())
        return;
    std::size_t shown = 0;
    for (std::size_t index = 0; index < sequences.size(); ++index) {
        m_parts.ui.sequenceWidget->addSequenceRow(sequences[index], false);
        m_parts.ui.center_wgt->addNewModelSlot(QString::fromStdString(sequences[index].id));
        if (sequences[index].isMain && !sequences[shown].isMain)
            shown = index;
    }
    showSequence(QString::fromStdString(sequences[shown].id));
}

void ShownDocument::flushPanels()
{
    m_parts.commonControl->flushPending();
    m_parts.generalSetting->flushPending();
    m_parts.ui.widget_para->flushPending();
    m_parts.ui.sequenceWidget->flushPending();
}

QString ShownDocument::sequenceId() const
{
    return m_parts.ui.center_wgt->currentSequenceId();
}

EditPlace ShownDocument::place() const
{
    return {sequenceId(), m_parts.ui.center_wgt->currentStepId()};
}

void ShownDocument::goTo(const EditPlace& place)
{
    showSequence(place.sequenceId);
    m_parts.ui.center_wgt->chooseStep(place.stepId);
}

void ShownDocument::showSequence(const QString& sequenceId)
{
    if (m_isShowing) // the table tells of the row that was chosen below
        return;
    const QScopedValueRollback<bool> showing(m_isShowing, true);
    // What waits belongs to the sequence that was shown.
    flushPanels();
    if (sequenceId.isEmpty() || sequenceId != this->sequenceId())
        showNoStep();
    m_parts.commonControl->setSequenceId(sequenceId);
    m_parts.generalSetting->setSequenceId(sequenceId);
    m_parts.ui.center_wgt->showSequence(sequenceId);
    m_parts.ui.sequenceWidget->selectSequence(sequenceId);
    m_parts.ui.widget_para->showSequence(sequenceId);
    showRunVariables();
}

bool ShownDocument::isSequenceEmpty() const
{
    return processedit::getProcessListBySequenceID(m_parts.appName, sequenceId()).empty();
}

void ShownDocument::clearSequence()
{
    const DocumentEdits::Act act;
    DocumentEdits::instance().removeAllProcessBySequenceID(m_parts.appName, sequenceId(), NoBlock);
    m_parts.ui.center_wgt->clearCurrentSequenceRows();
}

void ShownDocument::removeSequences(const QStringList& sequenceIds)
{
    m_parts.ui.center_wgt->removeModelSlot(sequenceIds);
    m_parts.ui.widget_para->removeSequenceModels(sequenceIds);
    LogicMaster::instance()->removeVariableUse(m_parts.appName, sequenceIds);
}

void ShownDocument::removeAllSequences()
{
    m_parts.ui.center_wgt->removeAllModelSlot();
    m_parts.ui.widget_para->removeAllModels();
    LogicMaster::instance()->forgetVariableUse({m_parts.appName});
}

void ShownDocument::showStep(int baseType, const QString& blockUuid)
{
    m_parts.generalSetting->flushPending();
    m_parts.commonControl->flushPending();
    if (baseType == NoBlock) {
        showNoStep();
        return;
    }
    if (!m_parts.ui.center_wgt->isShown(blockUuid))
        return;
    const auto block = processedit::getProcess(m_parts.appName, blockUuid);
    m_parts.generalSetting->loadGeneral(block);
    m_parts.commonControl->showBlock(block);
}

void ShownDocument::showNoStep()
{
    m_parts.generalSetting->showNothingSelected();
    m_parts.commonControl->showNothingSelected();
}

void ShownDocument::refreshUsersOf(const QStringList& names)
{
    const QSet<QString> changed(names.cbegin(), names.cend());
    for (const auto& block : processedit::getAllProcessBySequenceID(
             m_parts.appName, sequenceId(), IProcessBlock::ProcessBlockBelong(0))) {
        if (variable_use::namesIn(*block).intersects(changed))
            m_parts.ui.center_wgt->refreshRow(QString::fromStdString(block->uuid));
    }
}

void ShownDocument::reloadVariables()
{
    if (m_parts.appName.isEmpty())
        return;
    const QString shown = sequenceId();
    for (const SequenceInfo& info : processedit::getAllSequenceByAppName(m_parts.appName))
        m_parts.ui.widget_para->reloadSequenceVariables(QString::fromStdString(info.id));
    m_parts.ui.widget_para->showSequence(shown);
}

void ShownDocument::showRunVariables()
{
    const LogicView& view = *m_parts.ui.center_wgt;
    const auto owner = view.runTemplate();
    const bool isOther =
        view.isRunTabShown() && (owner || view.runSequenceId() != view.currentSequenceId());
    m_parts.ui.widget_para->showRunSequence(isOther ? view.runSequenceId() : QString(), owner);
}

void ShownDocument::showTab(bool isEdit)
{
    m_parts.ui.treeWidget->setEnabled(isEdit);
    m_parts.ui.attribute_tab->setTabEnabled(1, isEdit);
    m_parts.commonControl->setEnabled(isEdit);
    m_parts.generalSetting->setEnabled(isEdit);
    m_parts.layout.showTab(isEdit);
    showRunVariables();
}
