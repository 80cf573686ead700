#include "shell/WidgetBuildView.h"

#include "logic/run/RunInbox.h"
#include "model/dialogs/user_dialogs.h"
#include "model/services/widget_bases.h"
#include "panels/wgtCommonControl.h"
#include "panels/wgtGeneralSetting.h"
#include "shell/ProcessEditParts.h"
#include "shell/documents/AppletStorage.h"

#include <QCoreApplication>

WidgetBuildView::WidgetBuildView(ProcessEditParts& parts, QWidget* window)
    : m_parts(parts), m_window(window)
{
}

EditPlace WidgetBuildView::place() const
{
    return m_parts.shown.place();
}

void WidgetBuildView::showSequence(const QString& sequenceId)
{
    m_parts.shown.showSequence(sequenceId);
}

void WidgetBuildView::goTo(const EditPlace& place)
{
    m_parts.shown.goTo(place);
}

void WidgetBuildView::flushPanels()
{
    m_parts.shown.flushPanels();
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
    m_parts.layout.loadRunWidths();
}

void WidgetBuildView::finishRunRow(bool success)
{
    m_parts.ui.center_wgt->finishRow(success);
}

void WidgetBuildView::setReportingApp(const QString& appName)
{
    if (!appName.isEmpty())
        m_parts.ui.center_wgt->expectRun();
    m_parts.ui.center_wgt->inbox()->setRunningApp(appName);
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
