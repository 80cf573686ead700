#include "standalone/variables/SystemVariables.h"

#include "model/services/log.h"
#include "standalone/variables/system_values.h"

#include <QMutexLocker>

#include <algorithm>

namespace standalone {

namespace {

bool isSame(const system_variate::SystemVarInfo& one, const system_variate::SystemVarInfo& other)
{
    return one.name == other.name && one.description == other.description &&
           one.kind == other.kind && one.category == other.category && one.value == other.value &&
           one.precision == other.precision;
}

} // namespace

SystemVariables& SystemVariables::instance()
{
    static SystemVariables variables;
    return variables;
}

SystemVariables::SystemVariables()
{
    m_file.setOnTakenIn([this] { m_thread.start([this] { takeInFile(); }); });
}

SystemVariables::~SystemVariables()
{
    m_file.setOnTakenIn({});
}

void SystemVariables::setProjectFolder(const QString& folder)
{
    const QMutexLocker lock(&m_mutex);
    if (folder == m_file.folder())
        return;
    if (!m_file.save(SystemVariableFile::Patience::Last))
        sdk_ui_interface::log::log_error(
            QStringLiteral("[流程编辑] 工程的系统变量未能保存, 未写入的修改已丢失: ") +
            m_file.folder());
    for (const auto& variable : qAsConst(m_variables))
        tell(VarRemoved, variable);
    m_variables.clear();
    const auto loaded = m_file.load(folder);
    for (const auto& variable : loaded) {
        m_variables.insert(variable.name, variable);
        tell(VarAdded, variable);
    }
}

bool SystemVariables::save()
{
    return m_file.save();
}

SystemVariables::Result SystemVariables::define(const system_variate::SystemVarInfo& variable)
{
    if (!system_values::isName(variable.name))
        return WrongName;
    if (!system_values::fits(variable.category, variable.value))
        return WrongValue;
    const QMutexLocker lock(&m_mutex);
    const bool isNew = !m_variables.contains(variable.name);
    m_variables.insert(variable.name, variable);
    m_file.put(variable);
    tell(isNew ? VarAdded : VarChanged, variable);
    return Done;
}

SystemVariables::Result SystemVariables::setValue(const QString& name, const QString& value)
{
    const QMutexLocker lock(&m_mutex);
    const auto found = m_variables.find(name);
    if (found == m_variables.end())
        return Unknown;
    if (!system_values::fits(found->category, value))
        return WrongValue;
    found->value = value;
    m_file.put(*found);
    tell(VarValueChanged, *found);
    return Done;
}

SystemVariables::Result SystemVariables::remove(const QString& name)
{
    const QMutexLocker lock(&m_mutex);
    if (!m_variables.contains(name))
        return Unknown;
    m_file.remove(name);
    tell(VarRemoved, m_variables.take(name));
    return Done;
}

QVector<QString> SystemVariables::names() const
{
    const QMutexLocker lock(&m_mutex);
    QVector<QString> names = m_variables.keys().toVector();
    std::sort(names.begin(), names.end());
    return names;
}

QVector<system_variate::SystemVarInfo> SystemVariables::list() const
{
    const QMutexLocker lock(&m_mutex);
    QVector<system_variate::SystemVarInfo> list;
    list.reserve(m_variables.size());
    for (const auto& variable : m_variables)
        list.append(variable);
    std::sort(list.begin(), list.end(),
              [](const auto& a, const auto& b) { return a.name < b.name; });
    return list;
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

/// Whatever was put meanwhile is in both.
void SystemVariables::takeInFile()
{
    const QMutexLocker lock(&m_mutex);
    auto gone = m_variables;
    const auto present = m_file.variables();
    for (const auto& variable : present) {
        gone.remove(variable.name);
        const auto known = m_variables.constFind(variable.name);
        if (known != m_variables.constEnd() && isSame(*known, variable))
            continue;
        const bool isNew = known == m_variables.constEnd();
        m_variables.insert(variable.name, variable);
        tell(isNew ? VarAdded : VarChanged, variable);
    }
    for (const auto& variable : qAsConst(gone)) {
        m_variables.remove(variable.name);
        tell(VarRemoved, variable);
    }
}

void SystemVariables::tell(Operation operation, const system_variate::SystemVarInfo& variable)
{
    SystemVarDef definition;
    definition.name = variable.name;
    definition.kind = variable.kind;
    definition.category = variable.category;
    const bool isTaken = m_thread.start([this, operation, definition] {
        QMutexLocker lock(&m_listenerMutex);
        for (IVariateListener* listener : qAsConst(m_listeners))
            listener->notify(operation, definition);
    });
    if (!isTaken)
        qWarning("no thread to tell of a changed system variable");
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
