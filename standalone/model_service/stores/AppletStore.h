#pragma once

#include "standalone/model_service/documents/AppletModel.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <memory>

namespace standalone {

/// All applets of the process by name. GUI thread only.
class AppletStore
{
public:
    AppletModel* find(const QString& appName) const; ///< null if there is none
    AppletModel& findOrMake(const QString& appName);
    void remove(const QString& appName);
    /// False if the old name is unknown or the new one is empty or taken.
    bool rename(const QString& oldName, const QString& newName);
    QStringList names() const;

    /// The applet and the place that hold this very object; nulls for a copy.
    std::pair<const AppletModel*, const AppletModel::Place*>
    holderOf(const IProcessBlock& block) const;

private:
    std::map<QString, std::unique_ptr<AppletModel>> m_applets;
};

AppletStore& appletStore();

} // namespace standalone
