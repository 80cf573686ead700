#include "logic/rows/uds_steps.h"

#include "model/applet_name.h"
#include "model/blocks/UdsProcessBlock.h"
#include "model/services/process_edit.h"

namespace uds_steps {

namespace {
constexpr int NamedKinds = 1; ///< the step type that several kinds share
}

bool canBeEdited(const QString& appName)
{
    return !process_edit::getCustomBaseStepProperty(appletNameBytes(appName), DiagnosticStep,
                                                    NamedKinds)
                .name.empty();
}

BaseStepProperty kindOf(const QString& appName, int stepType, const std::string& name)
{
    const std::string owner = appletNameBytes(appName);
    return stepType == NamedKinds
               ? process_edit::getCustomBaseStepProperty(owner, DiagnosticStep, name)
               : process_edit::getCustomBaseStepProperty(owner, DiagnosticStep, stepType);
}

UDSProcessInfo infoOf(const BaseStepProperty& kind)
{
    UDSProcessInfo info;
    info.name = QString::fromStdString(kind.name);
    const auto json = kind.extra.find("udsJson");
    if (json != kind.extra.end())
        info.json = QString::fromStdString(json->second);
    return info;
}

UDSProcessInfo infoOf(const UdsProcessBlock& block)
{
    UDSProcessInfo info;
    info.name = QString::fromStdString(block.name);
    info.text = QString::fromStdString(block.stepText);
    info.json = QString::fromStdString(block.udsConfig());
    return info;
}

void takeOver(UdsProcessBlock& block, const UDSProcessInfo& info)
{
    block.name = info.name.isEmpty() ? block.property.name : info.name.toStdString();
    block.stepText = info.text.toStdString();
    block.setUdsConfig(info.json.toStdString());
    block.callCode = info.callCode.toStdString();
    block.taskCode = info.taskCode.toStdString();
    block.declareCode = info.declareCode.toStdString();
}

} // namespace uds_steps
