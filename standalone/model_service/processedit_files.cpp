#include "model/services/processedit.h"
#include "standalone/model_service/QuickStepStore.h"
#include "standalone/model_service/VariableStore.h"
#include "standalone/model_service/file_writing.h"

using namespace standalone;

namespace sdk_ui_interface {
namespace processedit {

void loadQuickStepJsonStr(const QString& json)
{
    quickStepStore().load(json.toUtf8());
}

void saveQuickStepJsonStr(const QString& path, BUSINESSTYPE /*business*/)
{
    writeFile(path, quickStepStore().fileText());
}

void saveGlobalVarJsonStr(const QString& projectPath, BUSINESSTYPE /*business*/)
{
    writeFile(projectPath + QStringLiteral("/globalVariable.json"),
              variableStore().globalsFileText());
}

} // namespace processedit
} // namespace sdk_ui_interface
