#pragma once

#include <QString>

/// Files that a later save would replace and whose content nobody may lose: those that can't be
/// read as what they should be, and those that another program has put in their place.
namespace kept_copies {

extern const QString damaged;  ///< ".damaged"
extern const QString replaced; ///< ".replaced"

/// Copies @p fileName aside as "<name><suffix>", under the first free name, or moves it there if it
/// can't be copied. A copy with that very content is kept once. The new name, or an empty text if
/// neither can be done.
QString keep(const QString& fileName, const QString& suffix);

} // namespace kept_copies
