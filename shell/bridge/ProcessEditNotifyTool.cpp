#include "shell/bridge/ProcessEditNotifyTool.h"

#include "shell/bridge/LogicMaster.h"
#include "shell/bridge/ProcessEditVariateListener.h"

ProcessEditNotifyTool* ProcessEditNotifyTool::instance()
{
    // Never destroyed: threads of the services tell of changes until the process has ended.
    static auto* const tool = new ProcessEditNotifyTool;
    return tool;
}

ProcessEditNotifyTool::ProcessEditNotifyTool()
    : m_listener(std::make_unique<ProcessEditVariateListener>())
{
    m_listener->setFunction(std::bind(&ProcessEditNotifyTool::onSystemVariateChange, this,
                                      std::placeholders::_1, std::placeholders::_2));
}

ProcessEditNotifyTool::~ProcessEditNotifyTool() = default;

void ProcessEditNotifyTool::onSystemVariateChange(Operation operation, SystemVarDef variable)
{
    if (operation == VarChanged) {
        const QStringList applets = LogicMaster::instance()->retypeUdsVariable(variable);
        if (!applets.isEmpty())
            emit systemUdsVarChange(applets);
    } else if (operation == VarValueChanged) {
        const auto users = LogicMaster::instance()->usersOfSystemVariable(variable.name);
        if (!users.isEmpty())
            emit systemVarChange(users);
    }
}

#include "moc_ProcessEditNotifyTool.cpp"
