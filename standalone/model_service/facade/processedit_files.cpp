#include "model/services/processedit.h"
#include "standalone/model_service/stores/QuickStepStore.h"
#include "standalone/model_service/stores/SharedTable.h"
#include "standalone/model_service/stores/VariableStore.h"

using namespace standalone;

namespace sdk_ui_interface {
namespace processedit {

void loadQuickStepJsonStr(const QString& json)
{
    const QByteArray text = json.toUtf8();
    if (quickStepStore().load(text))
        quickStepsFile().setLoaded(text, quickStepStore().fileText());
}

void saveQuickStepJsonStr(const QString& path, BUSINESSTYPE /*business*/)
{
    quickStepsFile().save(path, quickStepStore().fileText());
}

void saveGlobalVarJsonStr(const QString& projectPath, BUSINESSTYPE /*business*/)
{
    globalVariablesFile().save(projectPath + QStringLiteral("/globalVariable.json"),
                               variableStore().globalsFileText());
}

} // namespace processedit
} // namespace sdk_ui_interface
