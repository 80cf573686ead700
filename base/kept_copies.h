#pragma once

#include <QString>

/// Files that a later save would replace and whose content nobody may lose: those that can't be
/// read as what they should be, and those that another program has put in their place.
namespace kept_copies {

extern const QString damaged;  ///< ".damaged"
extern const QString replaced; ///< ".replaced"
extern const QString good;     ///< ".good": a backup that is better than what would replace it

/// Copies @p fileName aside as "<name><suffix>", under the first free name; moves it there if it is
/// none that can be read. A copy with that very content is kept once. The new name; or an empty
/// text, and then the file stands in its place as before and must not be replaced: a full disk took
/// no copy.
QString keep(const QString& fileName, const QString& suffix);

} // namespace kept_copies
