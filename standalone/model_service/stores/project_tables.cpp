#include "standalone/model_service/stores/project_tables.h"

#include "standalone/model_service/stores/QuickStepStore.h"
#include "standalone/model_service/stores/SharedTable.h"
#include "standalone/model_service/stores/TemplateStore.h"
#include "standalone/model_service/stores/VariableStore.h"

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
