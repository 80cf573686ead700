#include "model/services/processedit.h"
#include "standalone/model_service/QuickStepStore.h"
#include "standalone/model_service/VariableStore.h"
#include "standalone/model_service/project_file.h"

using namespace standalone;

namespace sdk_ui_interface {
namespace processedit {

void loadQuickStepJsonStr(const QString& json)
{
    quickStepStore().load(json.toUtf8());
}

void saveQuickStepJsonStr(const QString& path, BUSINESSTYPE /*business*/)
{
    writeProjectFile(path, quickStepStore().fileText());
}

void saveGlobalVarJsonStr(const QString& projectPath, BUSINESSTYPE /*business*/)
{
    writeProjectFile(projectPath + QStringLiteral("/globalVariable.json"),
                     variableStore().globalsFileText());
}

} // namespace processedit
} // namespace sdk_ui_interface
