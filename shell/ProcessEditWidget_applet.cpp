// The applet in a ProcessEditWidget: binding, loading, saving, and what is shown of it.

#include "shell/AppletStorage.h"
#include "shell/BuildController.h"
#include "shell/LogicMaster.h"
#include "shell/ProcessEditParts.h"
#include "shell/ProcessEditToolBar.h"
#include "shell/ProcessEditWidget.h"
#include "shell/RunFeeds.h"
#include "shell/WidgetBuildView.h"
#include "shell/applet_documents.h"
#include "shell/applet_folders.h"
#include "shell/notify_callbacks.h"
#include "shell/variable_use.h"

#include "edits/DocumentEdits.h"
#include "model/applet_name.h"
#include "model/dialogs/user_dialogs.h"
#include "model/services/applet_runtime.h"
#include "model/services/host.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"
#include "panels/wgtCommonControl.h"
#include "panels/wgtGeneralSetting.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

namespace processedit = sdk_ui_interface::processedit;

ProcessEditWidget::~ProcessEditWidget()
{
    // From here on no runner's thread reaches a widget. The run's progress is finished by the view
    // that made it.
    m->feeds->close();
    // Nor does a child that says something while it is being destroyed.
    for (QObject* child : findChildren<QObject*>())
        child->disconnect(this);
    LogicMaster::instance()->unregisterVariablePanel(m->ui.widget_para);
    if (m->resetOnDestruction && !m->appName.isEmpty()) {
        LogicMaster::instance()->removeApplet(m->appName, true);
        process_edit::removeAllVarByAppName(appletNameBytes(m->appName));
    }
}

void ProcessEditWidget::createCApplet(const QString& appName)
{
    nameParts(appName);
    LogicMaster::instance()->registerVariablePanel(appName, m->ui.widget_para);
    m->ui.center_wgt->showEditTab();
    LogicMaster::instance()->createApplet(appName, QString());
    capplet_sdk::registerLogCallBack(appName.toLocal8Bit().constData(), notify_callbacks::logText);
}

void ProcessEditWidget::nameParts(const QString& appName)
{
    m->appName = appName;
    m->storage->setAppName(appName);
    m->build->setAppName(appName);
    m->commonControl->setCAppletName(appName);
    m->generalSetting->setCAppletName(appName);
    m->ui.center_wgt->setCAppletName(appName);
    m->ui.sequenceWidget->setCAppletName(appName);
    m->ui.template_treeView->setCAppletName(appName);
    m->ui.widget_para->setCAppletName(appName);
}

QString ProcessEditWidget::getCAppletName() const
{
    return m->appName;
}

void ProcessEditWidget::setProcessJsonAndVciPath(const QString& jsonPath, const QString& vciPath)
{
    LogicMaster::instance()->setPaths(m->appName, jsonPath, vciPath);
}

void ProcessEditWidget::setSettingPath(const QString& path)
{
    LogicMaster::instance()->setSettingPath(m->appName, path);
}

void ProcessEditWidget::load(bool dataOnly)
{
    if (m->appName.isEmpty())
        return;
    applet_documents::read(m->appName, LogicMaster::instance()->jsonPath(m->appName), false);
    if (!dataOnly)
        loadDataToUI(m->appName, false);
    updateUseSystemVarItemInfo(m->appName, dataOnly);
    loadSplitterSizes();
    if (m->onCAppletLoaded)
        m->onCAppletLoaded(m->appName, dataOnly);
}

void ProcessEditWidget::loadDataToUI(const QString& appName, bool)
{
    m->buildView->setPanelsEnabled(appName != m->build->compilingApp());
    m->ui.sequenceWidget->clearRows();
    m->ui.center_wgt->removeAllModelSlot();
    m->ui.widget_para->removeAllModels();
    if (processedit::getAllSequenceByAppName(appName).empty())
        processedit::createSeuqence(appName, QStringLiteral("Sequence_0"));
    const auto sequences = processedit::getAllSequenceByAppName(appName);
    if (sequences.empty())
        return;
    std::size_t shown = 0;
    for (std::size_t index = 0; index < sequences.size(); ++index) {
        m->ui.sequenceWidget->addSequenceRow(sequences[index], false);
        m->ui.center_wgt->addNewModelSlot(QString::fromStdString(sequences[index].id));
        if (sequences[index].isMain && !sequences[shown].isMain)
            shown = index;
    }
    setCurrentShowSequence(QString::fromStdString(sequences[shown].id));
}

void ProcessEditWidget::save(const QString& targetPath)
{
    m->storage->save(targetPath);
}

bool ProcessEditWidget::saveApp(const QString& appName, bool strip, const QString& targetPath)
{
    return m->storage->saveApp(appName, strip, targetPath);
}

void ProcessEditWidget::setReplacesOthers(bool replaces)
{
    using applet_documents::Others;
    m->storage->setRuleForOthers(replaces ? Others::Replace : Others::Refuse);
}

void ProcessEditWidget::saveFromButton()
{
    const QString project = getProjectManager()->projectPath();
    if (!GetDirHaveWritePermission(project)) {
        if (!user_dialogs::confirm(this, tr("提示"),
                                   tr("文件夹无写入权限，是否设置文件夹写入权限")))
            return;
        if (!SetDirWritePermission(project)) {
            user_dialogs::warning(this, tr("警告"), tr("当前用户无法设置文件夹写入权限，设置失败"));
            return;
        }
        user_dialogs::information(this, tr("提示"), tr("设置文件夹写入权限成功"));
    }
    m->buildView->flushPanels();
    save(QString());
    AppletStorage::saveShared();
}

void ProcessEditWidget::openCodeFolder()
{
    const QString folder = getCAppletCodePath();
    if (!QFileInfo(folder).isDir())
        user_dialogs::warning(this, tr("提示"), tr("当前代码文件夹不存在"));
    else
        QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
}

void ProcessEditWidget::resetCApplet()
{
    LogicMaster::instance()->removeApplet(m->appName, false);
}

void ProcessEditWidget::clearCAppletData(bool removeModel, bool keepCustomSteps)
{
    if (removeModel) {
        process_edit::removeAllVarByAppName(appletNameBytes(m->appName));
        processedit::removeApp(m->appName);
    }
    if (!keepCustomSteps)
        resetCustomStepList();
}

void ProcessEditWidget::setProcessEditReset(bool reset)
{
    m->resetOnDestruction = reset;
}

QString ProcessEditWidget::getCAppletCodePath() const
{
    return applet_folders::codeFolder(m->appName);
}

QString ProcessEditWidget::getCAppletLibPath() const
{
    return applet_folders::moduleFolder(m->appName);
}

QString ProcessEditWidget::getCurrentShowSequenceId() const
{
    return m->ui.center_wgt->currentSequenceId();
}

void ProcessEditWidget::setCurrentShowSequence(const QString& sequenceId)
{
    m->buildView->showSequence(sequenceId);
    m->commonControl->setSequenceId(sequenceId);
    m->generalSetting->setSequenceId(sequenceId);
    m->ui.widget_para->showSequence(sequenceId);
}

bool ProcessEditWidget::currentShowSequenceIsEmpty() const
{
    return processedit::getProcessListBySequenceID(m->appName, getCurrentShowSequenceId()).empty();
}

void ProcessEditWidget::clearCurrentShowSequenceData()
{
    DocumentEdits::instance().removeAllProcessBySequenceID(m->appName, getCurrentShowSequenceId(),
                                                           NoBlock);
    m->ui.center_wgt->clearCurrentSequenceRows();
    emit LogicMaster::instance()->sigModify();
}

void ProcessEditWidget::syncAuthoringPanelsToSdk()
{
    m->buildView->flushPanels();
    m->ui.center_wgt->syncCheckStatesToSdk();
}

void ProcessEditWidget::reloadVariablePanel()
{
    if (m->appName.isEmpty())
        return;
    const QString shown = getCurrentShowSequenceId();
    for (const SequenceInfo& info : processedit::getAllSequenceByAppName(m->appName))
        m->ui.widget_para->reloadSequenceVariables(QString::fromStdString(info.id));
    m->ui.widget_para->showSequence(shown);
}

void ProcessEditWidget::addVarToCurrentView(const QString& name, const QString& value,
                                            DrelVarType type, int scope, bool forceNew)
{
    m->ui.widget_para->addVarToCurrentView(name, value, type, scope, forceNew);
}

void ProcessEditWidget::updateUseSystemVarItemInfo(const QString& appName, bool dataOnly)
{
    const bool defer = m->shouldDeferCodeGen && m->shouldDeferCodeGen();
    updateUseSystemVarItemInfoImpl(appName, dataOnly, defer);
}

void ProcessEditWidget::addCustomStepList(QVector<BaseStepProperty> list)
{
    m->ui.treeWidget->addCustomStepList(m->appName, list);
}

void ProcessEditWidget::resetCustomStepList()
{
    m->ui.treeWidget->resetCustomStepList(m->appName);
}

void ProcessEditWidget::setRuntimeStaleHint(bool stale)
{
    m->toolBar->setRuntimeStaleHint(stale);
}

void ProcessEditWidget::setRuntimeStaleBlockUuids(const QSet<QString>& blockUuids)
{
    m->ui.center_wgt->setRuntimeStaleBlockUuids(blockUuids);
}

int ProcessEditWidget::getProgressHandle() const
{
    return m->ui.center_wgt->progressHandle();
}

void ProcessEditWidget::runCApplet(const QString&) {}

void ProcessEditWidget::toVciCode() {}

void ProcessEditWidget::setCompileCheckCallback(
    std::function<QList<int>(const QString&, const QString&, const QString&, bool)> callback)
{
    m->build->setCheckCallback(std::move(callback));
}

void ProcessEditWidget::setStripSaveFieldsCallback(std::function<void(QJsonObject&)> callback)
{
    m->storage->setStripCallback(std::move(callback));
}

void ProcessEditWidget::setShouldDeferCodeGenCallback(std::function<bool()> callback)
{
    m->shouldDeferCodeGen = std::move(callback);
}

void ProcessEditWidget::setOnAuthoringSavedCallback(std::function<void(const QString&)> callback)
{
    m->storage->setSavedCallback(std::move(callback));
}

void ProcessEditWidget::setOnCAppletLoadedCallback(
    std::function<void(const QString&, bool)> callback)
{
    m->onCAppletLoaded = std::move(callback);
}

void ProcessEditWidget::setOnCompilePrepareCallback(std::function<void()> callback)
{
    m->build->setPrepareCallback(std::move(callback));
}

void ProcessEditWidget::setOnCompileFinishedCallback(std::function<void(bool)> callback)
{
    m->build->setFinishedCallback(std::move(callback));
}

void ProcessEditWidget::setUdsUpdateCallback(UdsUpdateFunction callback)
{
    m->udsUpdate = callback;
}

void ProcessEditWidget::setRefreshUdsBlocksCallback(
    std::function<void(const QString&, const QStringList&, UdsUpdateFunction, QSet<QString>&)>
        callback)
{
    m->refreshUdsBlocks = std::move(callback);
}

void ProcessEditWidget::setOnRuntimeStaleCallback(std::function<void(const QString&)> callback)
{
    m->onRuntimeStale = std::move(callback);
}
