#include "base/document_text.h"
#include "model/services/processedit.h"
#include "standalone/model_service/documents/StepTables.h"
#include "standalone/model_service/documents/applet_json.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/json/LoadReport.h"
#include "standalone/model_service/json/json_text.h"
#include "standalone/model_service/stores/AppletStore.h"
#include "standalone/model_service/stores/VariableStore.h"
#include "standalone/model_service/stores/compile_marks.h"
#include "standalone/runtime/RunnerRegistry.h"
#include "standalone/runtime/applet_paths.h"

using namespace standalone;

namespace sdk_ui_interface {
namespace processedit {

bool getCAppletDataIsExist(const QString& appName)
{
    const auto* applet = appletStore().find(appName);
    return applet && (applet->isDocument || !applet->sequences().empty());
}

QString generateProcessJson(const QString& appName)
{
    const auto* applet = appletStore().find(appName);
    return applet ? toText(writeApplet(*applet)) : QStringLiteral("{}");
}

void loadProcessJson(const QString& appName, const QString& json)
{
    LoadReport report(QStringLiteral("读取流程%1").arg(appName));
    JsonTree document;
    if (appName.isEmpty() ||
        !parseObject(document_text::utf8Of(json), report, document, BrokenText::ReadOn))
        return;
    const auto root = document.root();
    if (root.first().isMissing() && !appletStore().find(appName))
        return;
    // Of a broken text only what brings sequences is worth more than what is there.
    if (document.fault() && root.member("sequences").first().isMissing())
        return;
    readApplet(appletStore().findOrMake(appName), document, report);
    markChanged(toLocalName(appName));
}

void removeApp(const QString& appName)
{
    appletStore().remove(appName);
}

void renameProcessCAppletName(const QString& oldName, const QString& newName)
{
    if (!appletStore().rename(oldName, newName))
        return;
    variableStore().renameApplet(toLocalName(oldName), toLocalName(newName));
    stepTables().renameOwner(toLocalName(oldName), toLocalName(newName));
    RunnerRegistry::instance().rename(toLocalName(oldName), toLocalName(newName),
                                      toLocalName(appletModulePath(newName)));
    markCompiled(toLocalName(oldName));
    markChanged(toLocalName(newName));
}

QString getCAppletShowName(const QString& appName)
{
    return appName;
}

} // namespace processedit
} // namespace sdk_ui_interface
