#pragma once

#include "model/name_rules.h"

#include <QRegularExpression>
#include <QStringList>
#include <QVector>

/// The rules of an applet's sequences that need no table: names and the main flag. Names are
/// compared exactly, upper and lower case apart. No state, any thread.
namespace sequence_rules {

/// The name of a new sequence beside @p names: "Sequence_" and a number, the first free one from
/// the count of names on. Linear in the count.
QString freeName(const QStringList& names);

using name_rules::namePattern;
using name_rules::NameRefusal;
using name_rules::refusalOf;

struct MainFlag
{
    int row = 0;
    bool isMain = false;
};

/// The main flags to store, in table order, after the box of @p row was pressed; @p boxes tells of
/// all rows whether their box is ticked now. The pressed row becomes the main one, every other
/// ticked row ceases to be. A press that took the tick away stores nothing: a main sequence can
/// only be replaced, and the caller ticks its box again.
QVector<MainFlag> mainFlagsToStore(const QVector<bool>& boxes, int row);

} // namespace sequence_rules
