#pragma once

#include "model/DrelFunction.h"

#include <QList>
#include <QPair>
#include <QString>

#include <array>

/// What the entity picker shows of a function and what a call of it looks like. No state, any
/// thread.
namespace entry_functions {

/// The columns of a list of functions, in their order.
enum Column { ReturnColumn, PrefixColumn, NameColumn, ParametersColumn, DescriptionColumn };
constexpr int ColumnCount = 5;

/// A function as a row.
struct Row
{
    std::array<QString, ColumnCount> texts; ///< "无" where there is nothing to tell
    QString parametersTip;                  ///< the parameters with their descriptions, a line each
    /// Clear when a parameter is a record: no text can stand for it, so the function can be read
    /// but not picked.
    bool canBePicked = true;
};
Row row(const _DrelFunction& function);

QString name(const _DrelFunction& function);

/// A call with the type keywords of the parameters in the arguments' places, for the user to write
/// over: "prefix.name(s32,char*)". Without a prefix it begins with the name; parameters of type
/// void are left out.
QString callText(const _DrelFunction& function);

/// False for what a value can't be: functions that open a box of the editor's own.
bool isOffered(const _DrelFunction& function);

/// The functions of the applet's user that may be called, in their order.
QList<_DrelFunction> callableUserFunctions(const QList<QPair<_DrelFunction, int>>& functions);

} // namespace entry_functions
