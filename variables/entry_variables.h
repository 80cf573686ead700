#pragma once

#include "model/process_records.h"
#include "model/type_tables.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <vector>

/// Which variables a value may be, and how it names them. No state; GUI thread only, as the
/// services that are asked.
namespace entry_variables {

/// Where a variable comes from.
enum Origin {
    SystemOrigin = 0, ///< the workbench's variable service
    LocalOrigin = 1   ///< the sequence, the applet or all applets
};

/// A variable as it is offered.
struct EntryVariable
{
    QString name;
    QString type; ///< keyword, as the variable has it: an alias stays one
    QString description;
};

/// What a value wants of its variables.
struct Wanted
{
    QString type;                ///< keyword; empty and "void*": any type
    bool basicTypesOnly = false; ///< only types that a diagnosis data item can carry
};

/// Whether a variable of the type @p keyword is offered. Keywords are compared as texts: "int" is
/// not "s32".
bool isOffered(const QString& keyword, const Wanted& wanted);

/// Those of @p variables that are offered, in their order.
QVector<EntryVariable> offered(const std::vector<processVariable>& variables, const Wanted& wanted);

/// The system variables of users that bear @p type, or all of them with an empty @p type, in the
/// service's order. None if the service can't answer.
QVector<EntryVariable> offeredSystemVariables(const QString& type);

/// The keyword of a system variable's type; empty for one that can't be used.
QString systemTypeKeyword(DataCategoryType category);

/// The name with what tells its origin: "[local]name" or "[sys]name".
QString prefixedName(const QString& name, Origin origin);
/// The same of several, in their order.
QStringList prefixedNames(const QVector<EntryVariable>& variables, Origin origin);

} // namespace entry_variables
