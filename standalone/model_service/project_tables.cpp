#include "standalone/model_service/project_tables.h"

#include "standalone/model_service/QuickStepStore.h"
#include "standalone/model_service/SharedTable.h"
#include "standalone/model_service/TemplateStore.h"
#include "standalone/model_service/VariableStore.h"

namespace standalone {

void forgetProjectTables()
{
    quickStepStore() = QuickStepStore();
    templateStore().removeAll(false);
    variableStore().forgetGlobals();
    quickStepsFile() = SharedTable();
    globalVariablesFile() = SharedTable();
}

} // namespace standalone
