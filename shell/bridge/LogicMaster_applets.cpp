#include "shell/bridge/LogicMaster.h"

#include "shell/bridge/VciTransThread.h"

#include "model/applet_name.h"
#include "model/services/capplet.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"

#include <QMutexLocker>
#include <QPointer>

namespace capplet = sdk_ui_interface::capplet;
namespace processedit = sdk_ui_interface::processedit;

namespace {

// A running one is deleted at its end: its destructor waits, and with it the window would.
void letGo(VciTransThread* thread)
{
    if (thread && thread->isRunning())
        thread->cancel();
    else if (thread)
        thread->deleteLater();
}

} // namespace

bool LogicMaster::createApplet(const QString& appName, const QString& defaultPath)
{
    if (capplet::isCAppletExist(appName))
        return true;
    if (!defaultPath.isEmpty() && !m_appletPaths.contains(appName))
        m_appletPaths.insert(appName, {defaultPath, defaultPath});
    const int result = capplet::createCApplet(appName, ProcessApplet);
    addVciThread(appName);
    m_panelBind[appName] = false;
    return result == 0;
}

void LogicMaster::removeApplet(const QString& appName, bool force)
{
    const auto state = processedit::getCAppletRunState(appName);
    const bool stopped = state.first.empty() || state.second == AppletStopped;
    if (!stopped && !force) {
        stopApplet(appName, false, true);
        return;
    }
    processedit::removeApp(appName);
    process_edit::removeAllVarByAppName(appletNameBytes(appName));
    if (force) {
        capplet::stopRunnerFunction(appName);
        capplet::removeRunnerFunction(appName);
        capplet::unloadCAppletMp(appName);
    }
    forgetApplet(appName);
}

void LogicMaster::finishPendingRemoval(const QString& appName)
{
    if (!m_pendingRemoval.contains(appName))
        return;
    processedit::removeApp(appName);
    forgetApplet(appName);
}

void LogicMaster::forgetApplet(const QString& appName)
{
    capplet::destroyCApplet(appName);
    m_pendingRemoval.removeAll(appName);
    // A compile that is still under way must not start a run in an applet made anew.
    takePendingCompile(appName);
    takePendingVciCompile(appName);
    m_appletPaths.remove(appName);
    m_settingPaths.remove(appName);
    letGo(m_vciThreads.take(appName));
    m_panelBind.remove(appName);
    forgetVariableUse({appName});
    m_variablePanels.remove(appName);
}

void LogicMaster::renameApplet(const QString& oldName, const QString& newName)
{
    const auto moveEntry = [&](auto& map) {
        if (map.contains(oldName)) {
            map.insert(newName, map.value(oldName));
            map.remove(oldName);
        }
    };
    moveEntry(m_appletPaths);
    moveEntry(m_settingPaths);
    moveEntry(m_variablePanels);
    moveEntry(m_vciThreads);
    moveEntry(m_panelBind);
    {
        QMutexLocker lock(&m_udsMutex);
        moveEntry(m_udsVarInfo);
        moveEntry(m_udsVarUse);
    }
    if (VciTransThread* thread = m_vciThreads.value(newName))
        thread->setAppName(newName);
    emit sigRename(oldName, newName);
}

QString LogicMaster::jsonPath(const QString& appName) const
{
    return m_appletPaths.value(appName).first;
}

QString LogicMaster::vciPath(const QString& appName) const
{
    return m_appletPaths.value(appName).second;
}

void LogicMaster::setPaths(const QString& appName, const QString& jsonPath, const QString& vciPath)
{
    m_appletPaths.insert(appName, {jsonPath, vciPath});
}

QString LogicMaster::settingPath(const QString& appName) const
{
    return m_settingPaths.value(appName);
}

void LogicMaster::setSettingPath(const QString& appName, const QString& path)
{
    m_settingPaths.insert(appName, path);
}

void LogicMaster::registerVariablePanel(const QString& appName, QWidget* panel)
{
    if (!m_variablePanels.values().contains(panel))
        m_variablePanels.insert(appName, panel);
}

void LogicMaster::unregisterVariablePanel(QWidget* panel)
{
    const QList<QString> names = m_variablePanels.keys(panel);
    for (const QString& name : names)
        m_variablePanels.remove(name);
}

QWidget* LogicMaster::variablePanel(const QString& appName) const
{
    return m_variablePanels.value(appName);
}

void LogicMaster::clearVariablePanels()
{
    m_variablePanels.clear();
}

bool LogicMaster::isPanelBound(const QString& appName) const
{
    return m_panelBind.value(appName, false);
}

void LogicMaster::setPanelBound(const QString& appName, bool bound)
{
    if (m_panelBind.contains(appName))
        m_panelBind[appName] = bound;
}

void LogicMaster::clearPanelBindings()
{
    m_panelBind.clear();
}

VciTransThread* LogicMaster::addVciThread(const QString& appName)
{
    auto* thread = new VciTransThread(appName, this);
    VciTransThread* const earlier = m_vciThreads.value(appName);
    if (earlier && !earlier->isRunning())
        earlier->deleteLater();
    m_vciThreads.insert(appName, thread);
    connect(
        thread, &QThread::finished, this,
        [this, guarded = QPointer<VciTransThread>(thread)] {
            // Deleted meanwhile: its applet is gone.
            if (guarded)
                onVciThreadFinished(guarded);
        },
        Qt::QueuedConnection);
    return thread;
}

void LogicMaster::onVciThreadFinished(VciTransThread* thread)
{
    // A cancelled thread was replaced and reported when it was cancelled.
    if (thread->isCancelled())
        thread->deleteLater();
    else
        emit vciTransFinish(thread->result(), thread->appName());
}

void LogicMaster::clearTransVciThread()
{
    for (VciTransThread* thread : qAsConst(m_vciThreads))
        letGo(thread);
    m_vciThreads.clear();
}
