#include "standalone/model_service/stores/compile_marks.h"

#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/stores/AppletStore.h"

#include <unordered_set>

namespace standalone {

namespace {
std::unordered_set<std::string>& changedApplets()
{
    static std::unordered_set<std::string> names;
    return names;
}
} // namespace

bool needsUpdate(const std::string& appName)
{
    return changedApplets().count(appName) > 0;
}

void markChanged(const std::string& appName)
{
    changedApplets().insert(appName);
}

void markAllChanged()
{
    const auto names = appletStore().names();
    for (const auto& name : names)
        markChanged(toLocalName(name));
}

void markCompiled(const std::string& appName)
{
    changedApplets().erase(appName);
}

} // namespace standalone
