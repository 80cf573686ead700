#pragma once

#include "model/services/applet_runtime.h"
#include "standalone/runtime/AppletRun.h"

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace standalone {

/// All that the runtime knows of applets, by name (local 8-bit encoding). Any thread; one mutex,
/// and nothing is called or waited for while it is held.
class RunnerRegistry
{
public:
    static RunnerRegistry& instance();

    /// False if it exists.
    bool create(const std::string& appName, const std::string& modulePath);
    /// Stops its run; false for an unknown applet.
    bool destroy(const std::string& appName);
    bool exists(const std::string& appName) const;
    /// Under its new name from now on; an applet that runs keeps the old one, and one that nobody
    /// knows changes nothing.
    void rename(const std::string& oldName, const std::string& newName,
                const std::string& newModulePath);

    /// The applet while its module is in use: from a run to its unloading. Stays valid until the
    /// applet is destroyed.
    MpCApplet* loaded(const std::string& appName);
    /// False while it runs.
    bool unload(const std::string& appName);

    /// Starts a run and registers its runner; false if one is running, or if the system has no
    /// thread for it, which the log then says.
    bool run(AppletRun::Request request);
    bool stop(const std::string& appName);
    /// Forgets the runner; one that still runs is killed and ends like after a stop.
    void removeRunner(const std::string& appName);
    /// Whether its runner is at work; empty without a runner.
    std::optional<bool> runnerState(const std::string& appName) const;

    /// Of its last run; null before the first.
    std::shared_ptr<const RunRecord> record(const std::string& appName) const;

    void setLogCallback(const std::string& appName, capplet_sdk::LogCallback callback);
    capplet_sdk::LogCallback logCallback(const std::string& appName) const;

    /// Kills every child and waits for every thread. No callback comes after it.
    void shutDown();

private:
    RunnerRegistry() = default;

    struct Applet
    {
        bool exists = false;
        bool hasRunner = false;
        bool isLoaded = false;
        MpCApplet record;
        std::shared_ptr<AppletRun> run;             ///< the last one
        std::shared_ptr<const RunRecord> runRecord; ///< its
        capplet_sdk::LogCallback logCallback = nullptr;
    };

    const Applet* find(const std::string& appName) const;
    void retire(std::shared_ptr<AppletRun>& run);

    mutable std::mutex m_mutex;
    std::map<std::string, Applet> m_applets;
    std::vector<std::shared_ptr<AppletRun>> m_retired; ///< may still be in their last callback
};

} // namespace standalone
