// What the window's own tool bar does with projects and their applets.

#include "model/dialogs/user_dialogs.h"
#include "model/services/host.h"
#include "shell/ProcessEditWidget.h"
#include "workbench/MainWindow.h"

#include <QFileInfo>
#include <QToolButton>

#include <utility>

void MainWindow::chooseProject()
{
    if (!mayLeaveApplet())
        return;
    const QString folder = user_dialogs::askFolder(this, tr("打开工程"), m_project.path());
    if (folder.isEmpty())
        return;
    const ProjectFolder project(folder);
    if (!project.complaint().isEmpty()) {
        complain(project.complaint());
        return;
    }
    openProject(project);
    const QStringList applets = project.applets();
    const QString last = project.lastApplet();
    if (!applets.isEmpty())
        openApplet(applets.contains(last) ? last : applets.first());
}

void MainWindow::chooseApplet(const QString& name)
{
    if (name == m_applet)
        return;
    if (mayLeaveApplet())
        openApplet(name);
    refreshApplets();
}

void MainWindow::createApplet()
{
    if (!mayLeaveApplet())
        return;
    const QString name = user_dialogs::askText(this, tr("新建小程序"), tr("名称："), QString());
    if (name.isEmpty())
        return;
    const QString complaint = m_project.createApplet(name);
    if (complaint.isEmpty())
        openApplet(name);
    else
        complain(complaint);
}

void MainWindow::renameApplet()
{
    if (!mayLeaveApplet())
        return;
    const QString old = m_applet;
    const QString name = user_dialogs::askText(this, tr("重命名小程序"), tr("新名称："), old);
    if (name.isEmpty() || name == old)
        return;
    // Closed meanwhile: the document, its settings and a run must not be in use while they move.
    closeEditor();
    const QString complaint = m_project.renameApplet(old, name);
    openApplet(complaint.isEmpty() ? name : old);
    if (!complaint.isEmpty())
        complain(complaint);
}

void MainWindow::removeApplet()
{
    if (!user_dialogs::riskyQuestion(this, tr("警告"),
                                     tr("确定删除小程序 %1 及其全部文件吗？").arg(m_applet)))
        return;
    const QString name = m_applet;
    closeEditor();
    const QString complaint = m_project.removeApplet(name);
    if (!complaint.isEmpty())
        complain(complaint);
    openProject(m_project);
    const QStringList applets = m_project.applets();
    if (!applets.isEmpty())
        openApplet(applets.first());
}

void MainWindow::reloadApplet()
{
    m_editor->syncAuthoringPanelsToSdk();
    if (isWindowModified() &&
        !user_dialogs::riskyQuestion(
            this, tr("提示"),
            tr("将放弃 %1 未保存的修改，重新读取流程文件，是否继续？").arg(m_applet)))
        return;
    openApplet(m_applet);
}

void MainWindow::saveCopy()
{
    const QString start = m_project.appletFolder(m_applet) + m_applet + tr("_副本.pedt");
    const QString file =
        user_dialogs::askSaveFile(this, tr("另存副本"), start, tr("流程文件 (*.pedt)"));
    if (file.isEmpty())
        return;
    // The copy is written; whether the applet's own document is up to date is another matter.
    const bool isModified = isWindowModified();
    if (m_editor->saveApp(m_applet, false, file))
        showNotice(IWindowManager::NoticeInfo, tr("副本已保存: %1").arg(file));
    setWindowModified(isModified);
}

void MainWindow::offerAnotherPlace()
{
    if (!m_editor)
        return;
    showNotice(IWindowManager::NoticeWarning,
               tr("无法保存 %1，请检查磁盘空间和文件夹权限").arg(m_applet));
    if (user_dialogs::question(this, tr("警告"),
                               tr("无法保存 %1，请检查磁盘空间和文件夹权限。\n"
                                  "是否将副本另存到其他位置？")
                                   .arg(m_applet)))
        saveCopy();
}

// No box: who only looks needs no answer.
void MainWindow::tellIfReadOnly()
{
    const QString folder = m_project.appletFolder(m_applet);
    if (GetDirHaveWritePermission(folder) || !QFileInfo(folder).isDir())
        return;
    m_readOnlyOffer->setToolTip(tr("文件夹 %1 只读").arg(folder));
    m_readOnlyOffer->show();
    if (!std::exchange(m_isReadOnlyTold, true))
        showNotice(IWindowManager::NoticeWarning,
                   tr("工程文件夹 %1 只读，修改不能保存在原处，可以另存副本到其他位置")
                       .arg(m_project.path()));
}
