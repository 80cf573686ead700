#include "standalone/runtime/TraceFile.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/mman.h>
#endif

namespace standalone {

TraceFile::~TraceFile()
{
    if (m_file >= 0)
        ::close(m_file);
}

bool TraceFile::create()
{
#ifdef __linux__
    int file = memfd_create("applet_trace", MFD_CLOEXEC);
#else
    char name[] = "/tmp/applet_trace_XXXXXX";
    int file = mkstemp(name);
    if (file >= 0)
        unlink(name);
#endif
    // Above the numbers that a child's streams are given.
    constexpr int LowestOwn = 16;
    if (file >= 0) {
        m_file = fcntl(file, F_DUPFD_CLOEXEC, LowestOwn);
        ::close(file);
    }
    return m_file >= 0;
}

bool TraceFile::readAt(std::size_t at, void* data, std::size_t size) const
{
    ssize_t got = 0;
    do {
        got = ::pread(m_file, data, size, static_cast<off_t>(at));
    } while (got < 0 && errno == EINTR);
    return got == static_cast<ssize_t>(size);
}

} // namespace standalone
