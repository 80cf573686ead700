#pragma once

#include "model/process_records.h"
#include "model/type_tables.h"

#include <QItemSelection>
#include <QObject>
#include <QStringList>

class VariableClipboard;
class varStandModel;

/// What a person does to the variables of an applet. Each change goes to the model service first,
/// then to the rows of the sheet on screen, and is told by the signals. Rows are given by their
/// index in column 0. GUI thread only.
class VariableEditor : public QObject
{
    Q_OBJECT
public:
    explicit VariableEditor(QObject* parent = nullptr);

    void setCAppletName(const QString& appName);
    /// The rows that follow the changes, and whose variables they are; null for none.
    void setSheet(varStandModel* sheet, const QString& sequenceId);

    /// A new variable at the end of a group; its row, invalid if the service refused.
    QModelIndex add(const QModelIndex& group);
    void remove(const QModelIndexList& rows);
    /// Removes the variables of a group but for the locked ones.
    void removeAll(const QModelIndex& group);
    /// Puts copies before child @p row of a group; their rows.
    QItemSelection paste(const VariableClipboard& clipboard, const QModelIndex& group, int row);
    /// Moves variables before child @p row of a group, counted without themselves; their rows.
    QItemSelection move(const QStringList& uuids, const QModelIndex& group, int row);

    /// Takes over what has been written into a cell. Another type sets the value to 0; a value
    /// that may not be blank comes back. What is as it was isn't told.
    void storeCell(const QModelIndex& cell);
    /// Sets the length of a variable and cuts its value to it. @p variable is as the service has
    /// it.
    void setLength(processVariable variable, int length);
    /// Gives the variable of that name in sight a type and a value, or makes one in @p scope;
    /// @p forceNew makes one in any case. The name is a valid one.
    void give(const QString& name, const QString& value, DrelVarType type,
              processVariableType scope, bool forceNew);

signals:
    /// Other sequences see what has changed: whether a global variable is among it, and the names.
    void sigShared(bool isHaveGlobalVar, QStringList names);
    /// Steps of a sequence, or of all with an empty id, may still use names that are no variables'
    /// any more: removed ones, or one that was changed to @p newName.
    void sigNamesGone(QStringList names, QString newName, QString sequenceId);

private:
    /// Who sees a change.
    struct Reach
    {
        bool isShared = false;
        bool isGlobal = false;
        QStringList names;
        void add(processVariableType scope);
        void add(processVariableType scope, const std::string& name);
    };
    void tell(const Reach& reach);
    void tellGone(const QStringList& names, const QString& newName, processVariableType scope);

    std::string ownerOf(processVariableType scope) const;
    std::string addToService(processVariableType scope) const;
    QString variableInSight(const std::string& name) const;
    /// Stores a variable and brings its row up to date.
    processVariable store(const processVariable& variable);
    QItemSelection insertRows(const QModelIndex& group, int row,
                              const std::vector<processVariable>& variables);

    varStandModel* m_sheet = nullptr;
    std::string m_appName; ///< as the service takes it
    std::string m_sequenceId;
};
