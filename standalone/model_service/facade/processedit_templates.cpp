#include "model/services/processedit.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/stores/AppletStore.h"
#include "standalone/model_service/stores/TemplateStore.h"

using namespace standalone;

namespace sdk_ui_interface {
namespace processedit {

void loadTemplateJsonStr(const QString& json)
{
    templateStore().load(json.toUtf8());
}

QString generateTemplateJsonStr()
{
    return templateStore().fileText();
}

std::vector<processTemplateInfo> getAllProcessTemplate()
{
    return templateStore().all();
}

processTemplateInfo getProcessTemplateByID(const QString& id)
{
    const auto* info = templateStore().find(toUtf8(id));
    return info ? *info : processTemplateInfo();
}

std::pair<QString, QString> addProcessTemplate(const QString& appName, const QString& sequenceId)
{
    const auto* applet = appletStore().find(appName);
    if (!applet)
        return {};
    auto info = makeTemplate(appName, *applet, toUtf8(sequenceId));
    if (info.mainSequence.id.empty())
        return {};
    info.id = newUuid();
    info.name = toUtf8(templateStore().freeTemplateName(toText(info.mainSequence.name)));
    templateStore().add(info);
    return {toText(info.id), toText(info.name)};
}

void removeProcessTemplate(const QString& id)
{
    templateStore().remove(toUtf8(id));
}

void renameProcessTemplate(const QString& id, const QString& name)
{
    templateStore().rename(toUtf8(id), toUtf8(name));
}

void removeAllProcessTemplate(bool keepLoadedMark)
{
    templateStore().removeAll(keepLoadedMark);
}

} // namespace processedit
} // namespace sdk_ui_interface
