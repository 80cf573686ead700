#pragma once

#include <QFile>
#include <QString>

#include <sys/resource.h>
#include <unistd.h>

#include <csignal>

/// Circumstances under which files can't be written.
namespace test_support {

/// The rights of an ordinary user as long as it lives, for tests that a superuser runs: permissions
/// of files say nothing to that one.
class OrdinaryUser
{
public:
    OrdinaryUser() : m_wasRoot(geteuid() == 0)
    {
        if (m_wasRoot)
            m_isOrdinary = seteuid(Nobody) == 0;
    }
    ~OrdinaryUser()
    {
        if (m_wasRoot && seteuid(0) != 0)
            qFatal("the rights of the superuser did not come back");
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

    bool isOrdinary() const { return m_isOrdinary; }

    /// Makes a file or folder that ordinary user's own.
    static bool own(const QString& path)
    {
        return geteuid() != 0 || chown(QFile::encodeName(path).constData(), Nobody, Nobody) == 0;
    }

private:
    static constexpr uid_t Nobody = 65534;
    bool m_wasRoot;
    bool m_isOrdinary = true;
};

/// A disk that takes no file larger than so many bytes, as long as it lives.
class FullDisk
{
public:
    explicit FullDisk(rlim_t mostBytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_earlier);
        rlimit limit = m_earlier;
        limit.rlim_cur = mostBytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_earlier); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit m_earlier{};
};

} // namespace test_support
