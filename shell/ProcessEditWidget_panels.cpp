// What the panels around the tree ask of a ProcessEditWidget: palette, sequences, templates,
// variables.

#include "shell/ProcessEditParts.h"
#include "shell/ProcessEditWidget.h"
#include "shell/WidgetBuildView.h"
#include "shell/bridge/LogicMaster.h"
#include "shell/documents/variable_use.h"

#include "edits/DocumentEdits.h"
#include "logic/palette/palette_choice.h"
#include "model/blocks/UdsProcessBlock.h"
#include "model/services/host.h"
#include "model/services/processedit.h"
#include "model/step_reference.h"
#include "sequences/template_file.h"

#include <QMenu>
#include <QTreeWidget>

namespace processedit = sdk_ui_interface::processedit;

namespace {

void addChosenStep(LogicView& view, const std::optional<palette_choice::Step>& step)
{
    if (!step)
        return;
    view.addStep(step->baseType, step->stepType, step->text, false, false, step->quickStepId);
    view.focusSteps(); // Delete means the new step
}

} // namespace

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
    connect(table, &wgtSequenceTable::sigNotice, this, &ProcessEditWidget::tell);
    connect(m->ui.center_wgt, &LogicView::sigNotice, this, &ProcessEditWidget::tell);
    const wgtLocalVariable* variables = m->ui.widget_para;
    connect(variables, &wgtLocalVariable::sigUpdateVariable, this,
            &ProcessEditWidget::onVariablesUpdated);
    connect(variables, &wgtLocalVariable::sigNamesGone, this, &ProcessEditWidget::tellOfUsers);
    connect(m->ui.import_toolButton, &QToolButton::clicked, this,
            &ProcessEditWidget::onImportTemplateButtonClicked);
    connect(m->ui.export_toolButton, &QToolButton::clicked, this,
            &ProcessEditWidget::onExportTemplateButtonClicked);
}

void ProcessEditWidget::onRemoveSelectSequence(QStringList sequenceIdList)
{
    m->shown.removeSequences(sequenceIdList);
}

void ProcessEditWidget::onRemoveAllSequence()
{
    m->shown.removeAllSequences();
}

void ProcessEditWidget::onAddTemplateSequence(QStringList sequenceIdList)
{
    bool isAnyAdded = false;
    for (const QString& sequenceId : qAsConst(sequenceIdList)) {
        if (!DocumentEdits::instance().addProcessTemplate(m->appName, sequenceId).first.isEmpty())
            isAnyAdded = true;
    }
    if (!isAnyAdded)
        return;
    template_file::save();
    emit LogicMaster::instance()->sigUpdateTemplateWidget(m->appName);
    m->ui.tabWidget->setCurrentIndex(m->TemplateTab);
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
    m->shown.refreshUsersOf(names);
}

void ProcessEditWidget::tell(const QString& text)
{
    getWindowManager()->showNotice(IWindowManager::NoticeInfo, text);
}

void ProcessEditWidget::tellOfUsers(const QStringList& names, const QString& newName,
                                    const QString& sequenceId)
{
    m->shown.flushPanels(); // a step that is being written counts as it will be
    const auto users =
        variable_use::usersOf(m->appName, sequenceId, QSet<QString>(names.begin(), names.end()));
    if (users.isEmpty())
        return;
    const QString what = newName.isEmpty()
                             ? tr("已删除变量 %1").arg(names.join(QStringLiteral("、")))
                             : tr("变量 %1 已改名为 %2").arg(names.first(), newName);
    const QString text = tr("%1，仍有 %2 个步骤使用%3")
                             .arg(what)
                             .arg(users.size())
                             .arg(newName.isEmpty() ? tr("它") : tr("旧名称"));
    tell(text);
    const auto first = processedit::getProcess(m->appName, users.first().stepId);
    const QString name = first ? QString::fromStdString(first->name).simplified() : QString();
    emit notifyRunResultSig(true,
                            withStepReference(tr("%1，第一个: 步骤“%2”").arg(text, name),
                                              users.first().sequenceId, users.first().stepId));
}

void ProcessEditWidget::connectPalette()
{
    StepTree* palette = m->ui.treeWidget;
    palette->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(palette, &QTreeWidget::itemDoubleClicked, this,
            &ProcessEditWidget::onItemDoubleClickedSlot);
    connect(palette, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& pos) { contextMenuEvent(pos); });
    const LogicView* view = m->ui.center_wgt;
    connect(view, &LogicView::sigQuickStepsAdded, LogicMaster::instance(),
            [](const QStringList& ids) {
                emit LogicMaster::instance()->sigUpdateQuickStep(ids, false);
            });
    connect(view, &LogicView::sigUdsBlockAdded, this, [this](const QString& uuid) {
        const auto block = processedit::getProcess(m->appName, uuid);
        addUdsVar(std::dynamic_pointer_cast<UdsProcessBlock>(block), m->appName);
    });
    connect(view, &LogicView::sigUdsBlockRemoved, this, [this](const QString& uuid) {
        LogicMaster::instance()->removeUdsVariables(m->appName, uuid);
    });
    connect(view, &LogicView::sigStepsRemoved, this,
            [this] { variable_use::forgetRemovedBlocks(m->appName, getCurrentShowSequenceId()); });
}

void ProcessEditWidget::onItemDoubleClickedSlot(QTreeWidgetItem* item, int)
{
    // Read at once: the palette may be filled anew before the step is made.
    const auto step = palette_choice::stepOf(item, m->appName);
    QMetaObject::invokeMethod(
        this, [this, step] { addChosenStep(*m->ui.center_wgt, step); }, Qt::QueuedConnection);
}

void ProcessEditWidget::contextMenuEvent(QPoint pos)
{
    QTreeWidgetItem* item = m->ui.treeWidget->itemAt(pos);
    const auto entries = palette_choice::menuOf(item);
    if (entries.isEmpty())
        return;
    auto* menu = new QMenu(m->ui.treeWidget);
    menu->setObjectName(QStringLiteral("paletteMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const palette_choice::MenuEntry& entry : entries) {
        QAction* action = menu->addAction(entry.text);
        if (entry.action == palette_choice::Action::AddStep)
            connect(action, &QAction::triggered, this,
                    [this, step = palette_choice::stepOf(item, m->appName)] {
                        addChosenStep(*m->ui.center_wgt, step);
                    });
        else
            connect(action, &QAction::triggered, this,
                    [id = palette_choice::quickStepId(item)] { removeQuickStep(id); });
    }
    menu->popup(m->ui.treeWidget->viewport()->mapToGlobal(pos));
}

void ProcessEditWidget::removeQuickStep(const QString& id)
{
    DocumentEdits::instance().removeQuickStepInfo(id);
    emit LogicMaster::instance()->sigUpdateQuickStep({id}, true);
}

void ProcessEditWidget::addStatementStepToCurerentView(QStringList statements,
                                                       const std::vector<int>& splitIndexes)
{
    m->ui.center_wgt->appendStatements(statements, splitIndexes);
}
