#include "standalone/host/Host.h"

#include "model/services/host.h"
#include "model/services/log.h"
#include "standalone/variables/SystemVariables.h"

#include <QDir>
#include <QMutexLocker>

namespace standalone {

Host& Host::instance()
{
    static Host host;
    return host;
}

QString Host::projectPath() const
{
    QMutexLocker lock(&m_pathMutex);
    return m_projectPath;
}

void Host::setProjectPath(const QString& path)
{
    const QString folder = path.isEmpty() ? QString() : QDir::cleanPath(QDir(path).absolutePath());
    {
        QMutexLocker lock(&m_pathMutex);
        m_projectPath = folder;
    }
    SystemVariables::instance().setProjectFolder(folder);
}

void Host::logError(const QString& text)
{
    emit errorLogged(text);
}

void Host::showNotice(int level, const QString& text)
{
    emit noticeShown(level, text);
}

int Host::createProgress(const QString& title, int maximum, const QString& text)
{
    const int handle = m_nextProgress++;
    m_openProgress.insert(handle);
    emit progressCreated(handle, title, maximum, text);
    return handle;
}

void Host::setProgressValue(int handle, int value)
{
    if (m_openProgress.contains(handle))
        emit progressChanged(handle, value);
}

void Host::finishProgress(int handle)
{
    if (m_openProgress.remove(handle))
        emit progressFinished(handle);
}

namespace {

class ProjectManager : public IProjectManager
{
public:
    QString projectPath() override { return Host::instance().projectPath(); }
};

class WindowManager : public IWindowManager
{
public:
    void showNotice(int level, QString text) override { Host::instance().showNotice(level, text); }
};

} // namespace
} // namespace standalone

IProjectManager* getProjectManager()
{
    static standalone::ProjectManager manager;
    return &manager;
}

IWindowManager* getWindowManager()
{
    static standalone::WindowManager manager;
    return &manager;
}

namespace sdk_ui_interface {
namespace log {

int log_error(const QString& text)
{
    standalone::Host::instance().logError(text);
    return 0;
}

int create_progress(const QString& title, int maximum, const QString& text)
{
    return standalone::Host::instance().createProgress(title, maximum, text);
}

void set_progress_value(int handle, int value)
{
    standalone::Host::instance().setProgressValue(handle, value);
}

void finish_progress(int handle)
{
    standalone::Host::instance().finishProgress(handle);
}

} // namespace log
} // namespace sdk_ui_interface

#include "moc_Host.cpp"
