#pragma once

#include "model/services/system_variate.h"
#include "standalone/threads/WorkerPool.h"
#include "standalone/variables/SystemVariableFile.h"

#include <QHash>
#include <QMutex>
#include <QVector>

namespace standalone {

/// The system variables of a stand-alone host: a table that is kept in the project's folder, and
/// the listeners that are told of its changes, one after another, on a thread of the table's own.
/// Any thread may call. A change stands in the file at most SystemVariableFile::Delay later; what
/// another program has changed there comes into the table then, and is told like any change.
class SystemVariables
{
public:
    enum Result : int { Done = 0, Unknown = 1, WrongName = 2, WrongValue = 3 };

    static SystemVariables& instance();

    /// Takes the variables of that project in place of those before it, which are told as removed
    /// and the new ones as added. Empty: no project, the table is empty and stays in memory. The
    /// present project again changes nothing.
    void setProjectFolder(const QString& folder);
    /// Returns when the file holds what the table holds; false if it couldn't be written.
    bool save();

    /// Adds a variable or replaces the one of that name. Refused for a name that is no identifier
    /// and for a value that its category doesn't take.
    Result define(const system_variate::SystemVarInfo& variable);
    Result setValue(const QString& name, const QString& value);
    Result remove(const QString& name);

    /// In alphabetical order.
    QVector<QString> names() const;
    QVector<system_variate::SystemVarInfo> list() const;
    bool find(const QString& name, system_variate::SystemVarInfo& info) const;

    void addListener(IVariateListener* listener);
    /// Returns when the listener isn't being called any more.
    void removeListener(IVariateListener* listener);

    /// Returns when every change until now has been told.
    void waitForListeners();

private:
    SystemVariables();
    ~SystemVariables();
    void takeInFile();
    void tell(Operation operation, const system_variate::SystemVarInfo& variable);

    mutable QMutex m_mutex; ///< guards the variables, and the order in which changes are told
    QHash<QString, system_variate::SystemVarInfo> m_variables;
    SystemVariableFile m_file;
    QMutex m_listenerMutex; ///< held while a listener is called
    QVector<IVariateListener*> m_listeners;
    WorkerPool m_thread{1}; ///< last: its thread uses all of the above
};

} // namespace standalone
