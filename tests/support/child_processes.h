#pragma once

#include <QDir>
#include <QFile>
#include <QList>

namespace test_support {

/// The processes that a process has started and that run the program @p name, read from /proc.
inline QList<qint64> childProcesses(qint64 parent, const QByteArray& name)
{
    QList<qint64> found;
    const QString tasks = QStringLiteral("/proc/%1/task").arg(parent);
    for (const QString& task : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile children(QStringLiteral("%1/%2/children").arg(tasks, task));
        if (!children.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray& pid : children.readAll().simplified().split(' ')) {
            QFile command(QStringLiteral("/proc/%1/comm").arg(QString::fromLatin1(pid)));
            if (!pid.isEmpty() && command.open(QIODevice::ReadOnly) &&
                command.readAll().trimmed() == name.left(15))
                found.append(pid.toLongLong());
        }
    }
    return found;
}

/// How many processes have @p text in their command line, which zombies don't.
inline int processesWith(const QByteArray& text)
{
    int count = 0;
    for (const QString& pid : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        QFile line(QStringLiteral("/proc/%1/cmdline").arg(pid));
        count += line.open(QIODevice::ReadOnly) && line.readAll().contains(text);
    }
    return count;
}

/// Whether a process lives and is no zombie.
inline bool isAlive(qint64 pid)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray stat = file.readAll();
    return stat.mid(stat.lastIndexOf(')') + 2, 1) != "Z";
}

} // namespace test_support
