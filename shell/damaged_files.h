#pragma once

#include <QString>

/// Files that can't be read as what they should be, and that a later save would replace.
namespace damaged_files {

/// Copies @p fileName aside as "<name>.damaged", under the first free name, or moves it there if it
/// can't be copied. The new name, or an empty text if neither can be done.
QString keepCopy(const QString& fileName);

} // namespace damaged_files
