#include "model/services/process_json_edit.h"

#include "standalone/model_service/documents/StepTables.h"
#include "standalone/model_service/documents/template_json.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/json/LoadReport.h"
#include "standalone/model_service/json/json_text.h"
#include "standalone/model_service/stores/QuickStepStore.h"
#include "standalone/model_service/stores/SharedTable.h"
#include "standalone/model_service/stores/TemplateStore.h"
#include "standalone/model_service/stores/VariableStore.h"
#include "standalone/model_service/stores/compile_marks.h"

using namespace standalone;

namespace process_json_edit {

bool isDefaultStepLoaded()
{
    return stepTables().isLoaded();
}

void loadDefaultStepJson(const std::string& json)
{
    stepTables().load(json);
}

bool isQucikStepLoaded()
{
    return quickStepStore().isLoaded();
}

bool isDefaultGlobalVarLoaded()
{
    return variableStore().hasDefaults();
}

void loadDefaultVariable(const std::string& json)
{
    variableStore().loadDefaults(json);
    markAllChanged();
}

bool isUserGlobalVarLoaded()
{
    return variableStore().hasGlobals();
}

void loadGlobalVariable(const std::string& json)
{
    if (variableStore().loadGlobals(json))
        globalVariablesFile().setLoaded(QByteArray::fromStdString(json),
                                        variableStore().globalsFileText());
    markAllChanged();
}

bool isTempldateLoaded()
{
    return templateStore().isLoaded();
}

std::string generateAppAndSequenceVariableJson(const std::string& appName)
{
    return variableStore().appletText(appName);
}

void loadAppVariableJson(const std::string& appName, const std::string& json)
{
    variableStore().loadApplet(appName, json);
    markChanged(appName);
}

std::string generateOneTemplateJsonStr(const processTemplateInfo& info)
{
    return writeTemplate(info);
}

processTemplateInfo readOneTemplateJsonStr(const std::string& json)
{
    LoadReport report(QStringLiteral("读取模板"));
    JsonTree document;
    if (!parseObject(QByteArray::fromStdString(json), report, document) ||
        document.root().first().isMissing())
        return {};
    return readTemplate(document.root(), report, {});
}

} // namespace process_json_edit
