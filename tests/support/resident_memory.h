#pragma once

#include <QFile>

#include <unistd.h>

namespace test_support {

/// How much of the machine's memory a process takes, in bytes; 0 if it is gone.
inline qint64 residentBytes(qint64 pid)
{
    QFile file(QStringLiteral("/proc/%1/statm").arg(pid));
    return file.open(QIODevice::ReadOnly)
               ? file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE)
               : 0;
}

/// Whether what is freed is given back: sanitizers keep it for a while.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isFreedMemoryReused = false;
#else
constexpr bool isFreedMemoryReused = true;
#endif

} // namespace test_support
