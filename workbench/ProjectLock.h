#pragma once

#include <QLockFile>
#include <QString>

/// Says to other workbenches that a project is open here, as long as the object lives: a lock file
/// ".workbench.lock" in the project's folder. It keeps nobody out. One that a process left behind
/// on this machine doesn't count.
class ProjectLock
{
public:
    /// @p projectPath is the project's folder. Where nothing can be written there is no lock, and
    /// nobody else to be told of: neither of the two can replace anything.
    explicit ProjectLock(const QString& projectPath);

    /// Who had the project open, for a person to read; empty: nobody, or nobody knows.
    QString holder() const { return m_holder; }
    /// Takes the lock of a holder that is gone without a trace, as one on another machine. One that
    /// still has it keeps it.
    void takeOver();

private:
    QLockFile m_file;
    QString m_holder;
};
