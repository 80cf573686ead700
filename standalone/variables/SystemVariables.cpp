#include "standalone/variables/SystemVariables.h"

#include <QMutexLocker>

#include <algorithm>

namespace standalone {

SystemVariables& SystemVariables::instance()
{
    static SystemVariables variables;
    return variables;
}

void SystemVariables::define(const system_variate::SystemVarInfo& variable)
{
    bool isNew = false;
    {
        QMutexLocker lock(&m_mutex);
        isNew = !m_variables.contains(variable.name);
        m_variables.insert(variable.name, variable);
    }
    tell(isNew ? VarAdded : VarChanged, variable);
}

void SystemVariables::setValue(const QString& name, const QString& value)
{
    system_variate::SystemVarInfo variable;
    {
        QMutexLocker lock(&m_mutex);
        const auto found = m_variables.find(name);
        if (found == m_variables.end())
            return;
        found->value = value;
        variable = *found;
    }
    tell(VarValueChanged, variable);
}

void SystemVariables::remove(const QString& name)
{
    system_variate::SystemVarInfo variable;
    {
        QMutexLocker lock(&m_mutex);
        if (!m_variables.contains(name))
            return;
        variable = m_variables.take(name);
    }
    tell(VarRemoved, variable);
}

QVector<QString> SystemVariables::names() const
{
    QMutexLocker lock(&m_mutex);
    QVector<QString> names = m_variables.keys().toVector();
    std::sort(names.begin(), names.end());
    return names;
}

bool SystemVariables::find(const QString& name, system_variate::SystemVarInfo& info) const
{
    QMutexLocker lock(&m_mutex);
    const auto found = m_variables.constFind(name);
    if (found == m_variables.cend())
        return false;
    info = *found;
    return true;
}

void SystemVariables::addListener(IVariateListener* listener)
{
    QMutexLocker lock(&m_listenerMutex);
    m_listeners.append(listener);
}

void SystemVariables::removeListener(IVariateListener* listener)
{
    QMutexLocker lock(&m_listenerMutex);
    m_listeners.removeAll(listener);
}

void SystemVariables::waitForListeners()
{
    m_thread.waitForDone();
}

void SystemVariables::tell(Operation operation, const system_variate::SystemVarInfo& variable)
{
    SystemVarDef definition;
    definition.name = variable.name;
    definition.kind = variable.kind;
    definition.category = variable.category;
    m_thread.start([this, operation, definition] {
        QMutexLocker lock(&m_listenerMutex);
        for (IVariateListener* listener : qAsConst(m_listeners))
            listener->notify(operation, definition);
    });
}

} // namespace standalone

using standalone::SystemVariables;

namespace system_variate {

bool GetVariateNameSet(QVector<QString>& names)
{
    names = SystemVariables::instance().names();
    return true;
}

VarErrorCode GetVariate(const QString& name, SystemVarInfo& info)
{
    return SystemVariables::instance().find(name, info) ? VarOk : VarNotFound;
}

} // namespace system_variate

IVariateListener::IVariateListener() = default;
IVariateListener::~IVariateListener() = default;

void IVariateListener::notify(Operation operation, const SystemVarDef& variable)
{
    onVariateDirectChange(operation, variable);
}

IUIVariateListener::IUIVariateListener()
{
    SystemVariables::instance().addListener(this);
}

IUIVariateListener::~IUIVariateListener()
{
    SystemVariables::instance().removeListener(this);
}
