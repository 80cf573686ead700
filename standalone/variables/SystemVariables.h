#pragma once

#include "model/services/system_variate.h"
#include "standalone/threads/WorkerPool.h"

#include <QHash>
#include <QMutex>
#include <QVector>

namespace standalone {

/// The system variables of a stand-alone host: a table in memory, and the listeners that are told
/// of its changes, one after another, on a thread of the table's own. Any thread may call.
class SystemVariables
{
public:
    static SystemVariables& instance();

    /// Adds a variable or replaces the one of that name.
    void define(const system_variate::SystemVarInfo& variable);
    void setValue(const QString& name, const QString& value);
    void remove(const QString& name);

    QVector<QString> names() const;
    bool find(const QString& name, system_variate::SystemVarInfo& info) const;

    void addListener(IVariateListener* listener);
    /// Returns when the listener isn't being called any more.
    void removeListener(IVariateListener* listener);

    /// Returns when every change until now has been told.
    void waitForListeners();

private:
    SystemVariables() = default;
    void tell(Operation operation, const system_variate::SystemVarInfo& variable);

    mutable QMutex m_mutex; ///< guards the variables
    QHash<QString, system_variate::SystemVarInfo> m_variables;
    QMutex m_listenerMutex; ///< held while a listener is called
    QVector<IVariateListener*> m_listeners;
    WorkerPool m_thread{1}; ///< last: its thread uses all of the above
};

} // namespace standalone
