// What the panels around the tree ask of a ProcessEditWidget: palette, sequences, templates,
// variables.

#include "shell/LogicMaster.h"
#include "shell/ProcessEditParts.h"
#include "shell/ProcessEditWidget.h"
#include "shell/variable_use.h"

#include "model/services/processedit.h"
#include "sequences/template_file.h"

namespace processedit = sdk_ui_interface::processedit;

namespace {
constexpr int TemplateTab = 1;
}

void ProcessEditWidget::connectSequences()
{
    const wgtSequenceTable* table = m->ui.sequenceWidget;
    connect(table, &wgtSequenceTable::currentSequenceChanged, this,
            &ProcessEditWidget::currentSequenceChangedSlot);
    connect(table, &wgtSequenceTable::signalAddSquence, this, [this](const QString& sequenceId) {
        m->ui.center_wgt->addNewModelSlot(sequenceId);
        m->ui.widget_para->reloadSequenceVariables(sequenceId);
    });
    connect(table, &wgtSequenceTable::signalRemoveSequence, this,
            &ProcessEditWidget::onRemoveSelectSequence);
    connect(table, &wgtSequenceTable::signalRemoveAllSequence, this,
            &ProcessEditWidget::onRemoveAllSequence);
    connect(table, &wgtSequenceTable::signalRenameSequence, m->ui.center_wgt,
            &LogicView::refreshSequenceNames);
    connect(table, &wgtSequenceTable::signalAddTemplate, this,
            &ProcessEditWidget::onAddTemplateSequence);
    connect(table, &wgtSequenceTable::sigModified, LogicMaster::instance(),
            &LogicMaster::sigModify);
    const wgtLocalVariable* variables = m->ui.widget_para;
    connect(variables, &wgtLocalVariable::sigModified, LogicMaster::instance(),
            &LogicMaster::sigModify);
    connect(variables, &wgtLocalVariable::sigUpdateVariable, this,
            &ProcessEditWidget::onVariablesUpdated);
    connect(m->ui.import_toolButton, &QToolButton::clicked, this,
            &ProcessEditWidget::onImportTemplateButtonClicked);
    connect(m->ui.export_toolButton, &QToolButton::clicked, this,
            &ProcessEditWidget::onExportTemplateButtonClicked);
}

void ProcessEditWidget::onRemoveSelectSequence(QStringList sequenceIdList)
{
    m->ui.center_wgt->removeModelSlot(sequenceIdList);
    m->ui.widget_para->removeSequenceModels(sequenceIdList);
}

void ProcessEditWidget::onRemoveAllSequence()
{
    m->ui.center_wgt->removeAllModelSlot();
    m->ui.widget_para->removeAllModels();
    LogicMaster::instance()->forgetVariableUse({m->appName});
}

void ProcessEditWidget::onAddTemplateSequence(QStringList sequenceIdList)
{
    bool isAnyAdded = false;
    for (const QString& sequenceId : qAsConst(sequenceIdList)) {
        if (!processedit::addProcessTemplate(m->appName, sequenceId).first.isEmpty())
            isAnyAdded = true;
    }
    if (!isAnyAdded)
        return;
    template_file::save();
    emit LogicMaster::instance()->sigUpdateTemplateWidget(m->appName);
    m->ui.tabWidget->setCurrentIndex(TemplateTab);
}

void ProcessEditWidget::onImportTemplateButtonClicked()
{
    showUnavailable();
}

void ProcessEditWidget::onExportTemplateButtonClicked()
{
    showUnavailable();
}

void ProcessEditWidget::onUpdateQuickStep(QStringList quickStepIdList, bool isRemove)
{
    m->ui.treeWidget->onUpdateQuickStep(quickStepIdList, isRemove);
}

// Other panels show copies of what can be seen beyond one sequence, and so do rows.
void ProcessEditWidget::onVariablesUpdated(bool isHaveGlobalVar, const QStringList& names)
{
    const auto panels = LogicMaster::instance()->variablePanels();
    for (auto it = panels.cbegin(); it != panels.cend(); ++it) {
        auto* panel = qobject_cast<wgtLocalVariable*>(it.value());
        if (panel && panel != m->ui.widget_para && (isHaveGlobalVar || it.key() == m->appName))
            panel->refreshSequences({});
    }
    const QSet<QString> changed(names.cbegin(), names.cend());
    for (const auto& block : processedit::getAllProcessBySequenceID(
             m->appName, getCurrentShowSequenceId(), IProcessBlock::ProcessBlockBelong(0))) {
        if (variable_use::namesIn(*block).intersects(changed))
            m->ui.center_wgt->refreshRow(QString::fromStdString(block->uuid));
    }
}

void ProcessEditWidget::onItemDoubleClickedSlot(QTreeWidgetItem*, int) {}

void ProcessEditWidget::contextMenuEvent(QPoint) {}
