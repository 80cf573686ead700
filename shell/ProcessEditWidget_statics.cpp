// The operations of ProcessEditWidget that need no widget: they forward to who owns the matter.

#include "shell/ProcessEditWidget.h"
#include "shell/bridge/LogicMaster.h"
#include "shell/documents/applet_documents.h"
#include "shell/documents/variable_use.h"

#include "model/services/capplet.h"
#include "model/services/log.h"
#include "model/services/processedit.h"
#include "model/step_icons.h"

namespace processedit = sdk_ui_interface::processedit;

bool ProcessEditWidget::createAppletShell(const QString& appName)
{
    return LogicMaster::instance()->createApplet(appName, QString());
}

bool ProcessEditWidget::ensureAppPedtLoaded(const QString& appName)
{
    if (appName.isEmpty())
        return false;
    if (!processedit::getCAppletDataIsExist(appName))
        applet_documents::read(appName, appletJsonPath(appName), true);
    return processedit::getCAppletDataIsExist(appName);
}

void ProcessEditWidget::deleteCApplet(const QString& appName, bool force)
{
    LogicMaster::instance()->removeApplet(appName, force);
}

bool ProcessEditWidget::renameCApplet(const QString& oldName, const QString& newName)
{
    // Two applets under one name would save into each other's documents.
    if (newName.isEmpty() || processedit::getCAppletDataIsExist(newName) ||
        sdk_ui_interface::capplet::isCAppletExist(newName)) {
        sdk_ui_interface::log::log_error(
            QStringLiteral("[流程编辑] 无法将小程序 %1 重命名为 %2: 名称为空或已存在")
                .arg(oldName, newName));
        return false;
    }
    processedit::renameProcessCAppletName(oldName, newName);
    LogicMaster::instance()->renameApplet(oldName, newName);
    return true;
}

bool ProcessEditWidget::bindAppletScriptPath(const QString& appName, const QString& jsonPath)
{
    if (appName.isEmpty() || jsonPath.isEmpty())
        return false;
    LogicMaster::instance()->setPaths(appName, jsonPath, appletVciPath(appName));
    return true;
}

QString ProcessEditWidget::appletJsonPath(const QString& appName)
{
    return LogicMaster::instance()->jsonPath(appName);
}

QString ProcessEditWidget::appletVciPath(const QString& appName)
{
    return LogicMaster::instance()->vciPath(appName);
}

void ProcessEditWidget::setAppletJsonAndVciPath(const QString& appName, const QString& jsonPath,
                                                const QString& vciPath)
{
    LogicMaster::instance()->setPaths(appName, jsonPath, vciPath);
}

bool ProcessEditWidget::compileProcessEdit(
    const QString& appName,
    std::function<void(compileResult, quint64, const char*, const char*)> onFinished,
    QString& sequenceId)
{
    for (const SequenceInfo& info : processedit::getAllSequenceByAppName(appName)) {
        if (info.isMain && !info.id.empty()) {
            sequenceId = QString::fromStdString(info.id);
            break;
        }
    }
    if (sequenceId.isEmpty())
        return false;
    bool skipped = false;
    return processedit::compileCApplet(appName, sequenceId, false, false, std::move(onFinished),
                                       skipped);
}

QString ProcessEditWidget::getBaseStepIconName(int stepType)
{
    return ::getBaseStepIconName(stepType);
}

QString ProcessEditWidget::getUDSStepIconName(int stepType)
{
    return ::getUDSStepIconName(stepType);
}

DrelVarType ProcessEditWidget::getDrelVarTypeByDataCategory(DataCategoryType category)
{
    return varTypeFromDataCategory(category);
}

void ProcessEditWidget::updateUseSystemVarItemInfoImpl(const QString& appName, bool, bool defer)
{
    variable_use::recordApplet(appName, defer);
}

void ProcessEditWidget::uninstallVarNofity(QStringList appNames)
{
    LogicMaster::instance()->forgetVariableUse(appNames);
}

void ProcessEditWidget::addUdsVar(std::shared_ptr<UdsProcessBlock> block, const QString& appName)
{
    variable_use::addUdsVar(block, appName);
}

void ProcessEditWidget::updateUdsVarInfo(const QString& appName,
                                         std::shared_ptr<IProcessBlock> block)
{
    variable_use::updateUdsVarInfo(appName, block);
}

void ProcessEditWidget::setGetUDSProcessBlockUseVarsCallback(
    std::function<bool(std::shared_ptr<UdsProcessBlock>, QMap<QString, DataCategoryType>&,
                       QMap<QString, DrelVarType>&)>
        callback)
{
    variable_use::setUdsVariablesCallback(std::move(callback));
}

void ProcessEditWidget::clearVarWidget()
{
    LogicMaster::instance()->clearVariablePanels();
}

void ProcessEditWidget::clearTransVciThread()
{
    LogicMaster::instance()->clearTransVciThread();
}

void ProcessEditWidget::clearUDSVarInfo()
{
    LogicMaster::instance()->clearUdsVariables();
}

void ProcessEditWidget::clearUniversalPanelBindInfo()
{
    LogicMaster::instance()->clearPanelBindings();
}

void ProcessEditWidget::updateUniversalPanelBindState(const QString& appName, bool isBind)
{
    LogicMaster::instance()->setPanelBound(appName, isBind);
}
