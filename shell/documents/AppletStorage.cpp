#include "shell/documents/AppletStorage.h"

#include "shell/bridge/LogicMaster.h"

#include "model/services/host.h"
#include "model/services/log.h"
#include "model/services/processedit.h"

namespace processedit = sdk_ui_interface::processedit;

namespace {

QString targetFile(const QString& appName, const QString& targetPath)
{
    return targetPath.isEmpty()
               ? applet_documents::documentPath(LogicMaster::instance()->jsonPath(appName))
               : targetPath;
}

} // namespace

AppletStorage::AppletStorage(std::function<void()> flushPanels, QObject* parent)
    : QObject(parent), m_flushPanels(std::move(flushPanels))
{
}

void AppletStorage::save(const QString& targetPath)
{
    if (m_appName.isEmpty())
        return;
    m_flushPanels();
    const QString fileName = targetFile(m_appName, targetPath);
    if (!applet_documents::write(m_appName, fileName, m_strip, ruleAt(targetPath))) {
        emit refused();
        return;
    }
    applet_documents::keepBackup(m_appName, fileName, applet_documents::Backup::Replace);
    tellSaved(m_appName);
}

bool AppletStorage::saveApp(const QString& appName, bool strip, const QString& targetPath)
{
    if (appName.isEmpty())
        return false;
    const bool isOwn = appName == m_appName;
    if (isOwn)
        m_flushPanels();
    const QString fileName = targetFile(appName, targetPath);
    if (!applet_documents::write(appName, fileName,
                                 strip ? m_strip : applet_documents::StripFunction(),
                                 ruleAt(targetPath))) {
        if (isOwn)
            emit refused();
        sdk_ui_interface::log::log_error(
            QStringLiteral("[流程编辑] 无法写入 processInfo.pedt: %1").arg(fileName));
        return false;
    }
    if (targetPath.isEmpty())
        applet_documents::keepBackup(appName, fileName, applet_documents::Backup::KeepFirst);
    tellSaved(appName);
    return true;
}

applet_documents::Others AppletStorage::ruleAt(const QString& targetPath) const
{
    return targetPath.isEmpty() ? m_others : applet_documents::Others::Replace;
}

void AppletStorage::tellSaved(const QString& appName) const
{
    if (m_saved)
        m_saved(appName);
}

void AppletStorage::saveShared()
{
    const QString project = getProjectManager()->projectPath();
    if (project.isEmpty())
        return;
    processedit::saveGlobalVarJsonStr(project, EveryBusiness);
    processedit::saveQuickStepJsonStr(project + QStringLiteral("/quickStep.json"), EveryBusiness);
}

#include "moc_AppletStorage.cpp"
