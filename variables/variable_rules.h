#pragma once

#include "model/name_rules.h"
#include "model/process_records.h"
#include "model/type_tables.h"

#include <QRegularExpression>
#include <QStringList>
#include <QVector>

/// The rules of variables: names, offered types, lengths. No state, any thread.
namespace variable_rules {

using name_rules::namePattern;
using name_rules::NameRefusal;
using name_rules::refusalOf;

struct OfferedType
{
    DrelVarType type;
    QString keyword; ///< the primary one
};

/// The types that a variable can be given, in the order in which they are offered.
const QVector<OfferedType>& offeredTypes();

/// Whether a variable can be left without a value. Others have at least a 0.
bool mayBeBlank(const QString& keyword);

/// Whether variables of the type have a length that the user sets: texts and arrays.
bool carriesLength(const QString& keyword);

/// The greatest length that a variable of the type can have: bytes of a text, else elements.
int greatestLength(const QString& keyword);

/// The value without what a variable of @p length has no room for. A text is cut to so many bytes
/// of UTF-8, never within a character; an array to so many elements. Values of other types stay.
std::string cutToLength(const std::string& value, const std::string& keyword, int length);

/// The owner of variables of @p scope: the sequence, the applet, or empty.
std::string ownerOf(processVariableType scope, const std::string& appName,
                    const std::string& sequenceId);

} // namespace variable_rules
