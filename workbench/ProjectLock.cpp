#include "workbench/ProjectLock.h"

#include "model/services/host.h"

ProjectLock::ProjectLock(const QString& projectPath)
    : m_file(projectPath + QStringLiteral("/.workbench.lock"))
{
    // However long a project is open, its lock stays good.
    m_file.setStaleLockTime(0);
    if (!GetDirHaveWritePermission(projectPath) || m_file.tryLock(0) ||
        m_file.error() != QLockFile::LockFailedError)
        return;
    qint64 process = 0;
    QString host;
    QString program;
    m_holder = m_file.getLockInfo(&process, &host, &program)
                   ? QStringLiteral("主机 %1，进程 %2").arg(host).arg(process)
                   : QStringLiteral("未知进程");
}

void ProjectLock::takeOver()
{
    if (m_file.removeStaleLockFile())
        m_file.tryLock(0);
}
