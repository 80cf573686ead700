#pragma once

#include "model/type_tables.h"

#include <QString>

/// The value texts of variables. No state, any thread.
namespace variable_values {

/// The text as a variable of @p type keeps it: parsed as that type and printed again, as it can be
/// typed. A text that isn't a finite number gives 0, an empty text of a text type gives "NULL";
/// types without a plain value keep the text as it is.
QString normalized(const QString& text, DrelVarType type);

} // namespace variable_values
