// What the window's own tool bar does with projects and their applets.

#include "model/dialogs/user_dialogs.h"
#include "model/services/host.h"
#include "model/services/log.h"
#include "shell/ProcessEditWidget.h"
#include "shell/documents/applet_documents.h"
#include "workbench/MainWindow.h"
#include "workbench/ProjectLock.h"

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
    if (!openProject(project))
        return;
    const QStringList applets = project.applets();
    const QString last = project.lastApplet();
    if (!applets.isEmpty())
        openApplet(applets.contains(last) ? last : applets.first());
}

bool MainWindow::lockProject(const ProjectFolder& project)
{
    if (QFileInfo(project.path()) == QFileInfo(m_project.path()))
        return true; // what there was to ask was asked when it was opened
    auto lock = std::make_unique<ProjectLock>(project.path());
    if (!lock->holder().isEmpty() && !mayShareProject(project.path(), *lock))
        return false;
    m_lock = std::move(lock);
    return true;
}

bool MainWindow::mayShareProject(const QString& path, ProjectLock& lock)
{
    const QString fact = tr("工程 %1 已在另一个工作台中打开（%2）").arg(path, lock.holder());
    if (m_isUnattended) {
        sdk_ui_interface::log::log_error(fact);
        return true;
    }
    const QString open = tr("仍然打开");
    const QStringList choices{tr("不打开"), open};
    const QString text = tr("%1。\n\n同一个小程序在两处的修改不会合并：一处保存的内容会被另一处的"
                            "保存替换，替换前会询问。")
                             .arg(fact);
    if (choices.value(user_dialogs::choose(this, tr("工程已被打开"), text, choices)) != open)
        return false;
    lock.takeOver();
    return true;
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

void MainWindow::onSaveRefused()
{
    if (!m_editor)
        return;
    if (!isDocumentOfAnother())
        offerAnotherPlace();
    else if (mayReplaceDocument(tr("未保存")))
        m_editor->save(QString());
}

bool MainWindow::mayReplaceDocument(const QString& otherwise)
{
    if (!isDocumentOfAnother())
        return true;
    const QString replace = tr("替换");
    const QStringList choices{tr("不保存"), replace};
    const QString text = tr("小程序 %1 的流程文件已被其他程序修改，例如另一个工作台。\n\n"
                            "替换时，对方的内容另存在同一文件夹中；不保存时，可以用“重新加载”读取"
                            "对方的内容，或用“另存副本”把这里的内容保存到其他位置。")
                             .arg(m_applet);
    if (choices.value(user_dialogs::choose(this, tr("流程文件已被修改"), text, choices)) !=
        replace) {
        showNotice(IWindowManager::NoticeWarning,
                   tr("%1 的流程文件已被其他程序修改，%2").arg(m_applet, otherwise));
        return false;
    }
    if (applet_documents::mayBeReplaced(document()))
        return true;
    offerAnotherPlace();
    return false;
}

QString MainWindow::document() const
{
    return applet_documents::documentPath(m_project.appletFolder(m_applet));
}

bool MainWindow::isDocumentOfAnother() const
{
    return !m_isUnattended && applet_documents::isOfAnother(document());
}

void MainWindow::offerAnotherPlace()
{
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
