#include "shell/WidgetBuildView.h"

#include "model/dialogs/user_dialogs.h"
#include "model/services/widget_bases.h"
#include "panels/wgtCommonControl.h"
#include "panels/wgtGeneralSetting.h"
#include "shell/AppletStorage.h"
#include "shell/ProcessEditParts.h"
#include "shell/RunFeeds.h"

#include <QCoreApplication>

WidgetBuildView::WidgetBuildView(ProcessEditParts& parts, QWidget* window)
    : m_parts(parts), m_window(window)
{
}

EditPlace WidgetBuildView::place() const
{
    const LogicView& view = *m_parts.ui.center_wgt;
    return {view.currentSequenceId(), view.currentStepId()};
}

void WidgetBuildView::showSequence(const QString& sequenceId)
{
    // What waits belongs to the sequence that was shown.
    flushPanels();
    m_parts.ui.center_wgt->showSequence(sequenceId);
    m_parts.ui.sequenceWidget->selectSequence(sequenceId);
}

void WidgetBuildView::goTo(const EditPlace& place)
{
    showSequence(place.sequenceId);
    m_parts.ui.center_wgt->chooseStep(place.stepId);
}

void WidgetBuildView::flushPanels()
{
    m_parts.commonControl->flushPending();
    m_parts.generalSetting->flushPending();
    m_parts.ui.widget_para->flushPending();
    m_parts.ui.sequenceWidget->flushPending();
}

void WidgetBuildView::showEditTab()
{
    m_parts.ui.center_wgt->showEditTab();
}

void WidgetBuildView::setPanelsEnabled(bool enabled)
{
    m_parts.ui.center_wgt->setEnabled(enabled);
    m_parts.ui.tabWidget->setEnabled(enabled);
    m_parts.ui.attribute_tab->setEnabled(enabled);
    m_parts.commonControl->setEnabled(enabled);
    m_parts.generalSetting->setEnabled(enabled);
}

void WidgetBuildView::setToolBarState(ProcessEditToolBar::State state)
{
    m_parts.toolBar->setState(state);
}

void WidgetBuildView::setRunMode(bool running, const QString& appName, const QString& sequenceId)
{
    m_parts.ui.center_wgt->setRunMode(running, appName, sequenceId,
                                      QCoreApplication::translate("ProcessEditWidget", "正在运行"));
}

void WidgetBuildView::updateRunTreeWidth()
{
    m_parts.ui.center_wgt->setRunColumnWidths(m_parts.settings.runTreeWidths());
}

void WidgetBuildView::finishRunRow(bool success)
{
    m_parts.ui.center_wgt->finishRow(success);
}

void WidgetBuildView::setReportingApp(const QString& appName)
{
    if (!appName.isEmpty())
        m_parts.ui.center_wgt->expectRun();
    m_parts.feeds->setRunningApp(appName);
}

void WidgetBuildView::hideWaiting()
{
    m_parts.loading->hideLoading();
}

void WidgetBuildView::saveAll()
{
    m_parts.storage->save(QString());
    AppletStorage::saveShared();
}

void WidgetBuildView::warn(const QString& title, const QString& text)
{
    user_dialogs::warning(m_window, title, text);
}

bool WidgetBuildView::ask(const QString& title, const QString& text)
{
    return user_dialogs::question(m_window, title, text);
}
