#pragma once

#include "model/type_tables.h"

#include <QString>

/// What names and values system variables may have.
namespace system_values {

/// As of a variable in C, of at most 64 letters.
bool isName(const QString& name);

/// Whether @p value is one of that category: a number in decimal or, with 0x, in hexadecimal; a
/// finite number with a point; any text; or such values parted by commas for an array, whose bytes
/// are 0 to 255. An empty value is one of every category, and no category takes any.
bool fits(DataCategoryType category, const QString& value);

} // namespace system_values
