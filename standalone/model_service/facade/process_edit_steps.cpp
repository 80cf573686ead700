#include "model/services/process_edit.h"
#include "standalone/model_service/documents/StepTables.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/stores/AppletStore.h"
#include "standalone/model_service/stores/TemplateStore.h"
#include "standalone/model_service/stores/compile_marks.h"

using namespace standalone;

namespace process_edit {

namespace {

BaseStepProperty copyOf(const BaseStepProperty* property)
{
    return property ? *property : BaseStepProperty();
}

} // namespace

void updateProcessInfoIndex(const std::string& appName, const std::string& sequenceId,
                            const std::string& blockUuid, const std::string& parentUuid, int index)
{
    auto* applet = appletStore().find(toAppName(appName));
    const auto* place = applet ? applet->place(blockUuid) : nullptr;
    if (!place || place->sequence->head.id != sequenceId)
        return;
    if (applet->move(blockUuid, parentUuid, index))
        markChanged(appName);
}

BaseStepProperty getDefaultBaseStepProperty(logicBlockType baseType, int subType)
{
    return copyOf(stepTables().findDefault(baseType, subType));
}

std::vector<BaseStepProperty> getAllDefaultBaseStepProperty()
{
    return stepTables().defaults();
}

BaseStepProperty getCustomBaseStepProperty(const std::string& owner, logicBlockType baseType,
                                           int subType)
{
    return copyOf(stepTables().findCustom(owner, baseType, subType));
}

BaseStepProperty getCustomBaseStepProperty(const std::string& owner, logicBlockType baseType,
                                           const std::string& name)
{
    return copyOf(stepTables().findCustom(owner, baseType, name));
}

void addCustomStepProperty(const std::string& owner, std::vector<BaseStepProperty> properties)
{
    stepTables().addCustom(owner, properties);
}

void removeAllCustomStepProperty(const std::string& owner)
{
    stepTables().removeCustom(owner);
}

bool isHaveTemplateInfo(const std::string& id)
{
    return templateStore().find(id) != nullptr;
}

processTemplateInfo getProcessTemplateByID(const std::string& id)
{
    const auto* info = templateStore().find(id);
    return info ? *info : processTemplateInfo();
}

void removeAllProcessTemplate(bool keepLoadedMark)
{
    templateStore().removeAll(keepLoadedMark);
}

} // namespace process_edit
