#pragma once

#include <QtGlobal>

namespace standalone {

/// The machine's memory in bytes, 0 if it isn't known.
qint64 machineMemory();

} // namespace standalone
