#include "standalone/model_service/stores/AppletStore.h"

#include "model/IProcessBlock.h"

namespace standalone {

AppletStore& appletStore()
{
    static AppletStore store;
    return store;
}

AppletModel* AppletStore::find(const QString& appName) const
{
    const auto found = m_applets.find(appName);
    return found == m_applets.end() ? nullptr : found->second.get();
}

AppletModel& AppletStore::findOrMake(const QString& appName)
{
    auto& applet = m_applets[appName];
    if (!applet)
        applet = std::make_unique<AppletModel>();
    return *applet;
}

void AppletStore::remove(const QString& appName)
{
    m_applets.erase(appName);
}

bool AppletStore::rename(const QString& oldName, const QString& newName)
{
    const auto found = m_applets.find(oldName);
    if (found == m_applets.end() || newName.isEmpty() || m_applets.count(newName))
        return false;
    auto applet = std::move(found->second);
    m_applets.erase(found);
    m_applets[newName] = std::move(applet);
    return true;
}

QStringList AppletStore::names() const
{
    QStringList names;
    for (const auto& entry : m_applets)
        names.append(entry.first);
    return names;
}

std::pair<const AppletModel*, const AppletModel::Place*>
AppletStore::holderOf(const IProcessBlock& block) const
{
    for (const auto& entry : m_applets) {
        const auto* place = entry.second->place(block.uuid);
        if (place && place->block.get() == &block)
            return {entry.second.get(), place};
    }
    return {nullptr, nullptr};
}

} // namespace standalone
