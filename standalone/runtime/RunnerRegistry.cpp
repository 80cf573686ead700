#include "standalone/runtime/RunnerRegistry.h"

#include <QCoreApplication>

#include <algorithm>

namespace standalone {

RunnerRegistry& RunnerRegistry::instance()
{
    // Never destroyed, since a run's thread may use it until the process ends; the guard ends the
    // runs when the host forgot to.
    static RunnerRegistry* const registry = new RunnerRegistry;
    static struct Guard
    {
        ~Guard() { registry->shutDown(); }
    } guard;
    return *registry;
}

const RunnerRegistry::Applet* RunnerRegistry::find(const std::string& appName) const
{
    const auto found = m_applets.find(appName);
    return found == m_applets.end() ? nullptr : &found->second;
}

bool RunnerRegistry::create(const std::string& appName, const std::string& modulePath)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Applet& applet = m_applets[appName];
    if (applet.exists)
        return false;
    applet.exists = true;
    applet.record = {appName, modulePath};
    return true;
}

bool RunnerRegistry::destroy(const std::string& appName)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_applets.find(appName);
    if (found == m_applets.end() || !found->second.exists)
        return false;
    if (found->second.run)
        found->second.run->stop();
    retire(found->second.run);
    m_applets.erase(found);
    return true;
}

void RunnerRegistry::rename(const std::string& oldName, const std::string& newName,
                            const std::string& newModulePath)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Applet* applet = find(oldName);
    if (!applet || (applet->run && applet->run->isRunning()) || m_applets.count(newName) > 0)
        return;
    auto node = m_applets.extract(oldName);
    node.key() = newName;
    node.mapped().record = {newName, newModulePath};
    m_applets.insert(std::move(node));
}

bool RunnerRegistry::exists(const std::string& appName) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Applet* applet = find(appName);
    return applet && applet->exists;
}

MpCApplet* RunnerRegistry::loaded(const std::string& appName)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_applets.find(appName);
    return found != m_applets.end() && found->second.isLoaded ? &found->second.record : nullptr;
}

bool RunnerRegistry::unload(const std::string& appName)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_applets.find(appName);
    if (found == m_applets.end())
        return true;
    if (found->second.run && found->second.run->isRunning())
        return false;
    found->second.isLoaded = false;
    return true;
}

bool RunnerRegistry::run(AppletRun::Request request)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    const std::string appName = request.appName;
    const std::string module = request.module.toLocal8Bit().toStdString();
    Applet& applet = m_applets[appName];
    if (applet.run && applet.run->isRunning())
        return false;
    const auto run = std::make_shared<AppletRun>(std::move(request));
    if (!run->start()) {
        const capplet_sdk::LogCallback callback = applet.logCallback;
        lock.unlock();
        const QString line = QCoreApplication::translate("standalone::RunnerRegistry",
                                                         "运行启动失败: 系统无法再创建线程");
        if (callback)
            callback(appName.c_str(), LogError, line.toUtf8().constData());
        return false;
    }
    retire(applet.run);
    applet.hasRunner = true;
    applet.isLoaded = true;
    applet.record = {appName, module};
    applet.run = run;
    applet.runRecord = run->record();
    return true;
}

/// Called with the mutex held. Drops the runs of which nothing is left.
void RunnerRegistry::retire(std::shared_ptr<AppletRun>& run)
{
    if (run)
        m_retired.push_back(std::move(run));
    m_retired.erase(std::remove_if(m_retired.begin(), m_retired.end(),
                                   [](const auto& retired) { return retired->isOver(); }),
                    m_retired.end());
}

std::shared_ptr<const RunRecord> RunnerRegistry::record(const std::string& appName) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Applet* applet = find(appName);
    return applet ? applet->runRecord : nullptr;
}

bool RunnerRegistry::stop(const std::string& appName)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Applet* applet = find(appName);
    if (!applet || !applet->run || !applet->run->isRunning())
        return false;
    applet->run->stop();
    return true;
}

void RunnerRegistry::removeRunner(const std::string& appName)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_applets.find(appName);
    if (found == m_applets.end())
        return;
    found->second.hasRunner = false;
    if (found->second.run && found->second.run->isRunning())
        found->second.run->stop(std::chrono::milliseconds(0));
}

std::optional<bool> RunnerRegistry::runnerState(const std::string& appName) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Applet* applet = find(appName);
    if (!applet || !applet->hasRunner)
        return std::nullopt;
    return applet->run && applet->run->isRunning();
}

void RunnerRegistry::setLogCallback(const std::string& appName, capplet_sdk::LogCallback callback)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_applets[appName].logCallback = callback;
}

capplet_sdk::LogCallback RunnerRegistry::logCallback(const std::string& appName) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Applet* applet = find(appName);
    return applet ? applet->logCallback : nullptr;
}

void RunnerRegistry::shutDown()
{
    std::vector<std::shared_ptr<AppletRun>> runs;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        runs.swap(m_retired);
        for (auto& [name, applet] : m_applets) {
            if (applet.run)
                runs.push_back(std::move(applet.run));
            applet.run = nullptr;
        }
    }
    for (const auto& run : runs) {
        run->silence();
        run->stop(std::chrono::milliseconds(0));
    }
    // Their destructors wait for the threads.
    runs.clear();
}

} // namespace standalone
