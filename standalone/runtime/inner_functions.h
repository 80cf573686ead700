#pragma once

#include "model/DrelFunction.h"

#include <QList>

namespace standalone {

/// The functions that runner/applet_runtime.h and the *_functions.h beside it offer to an applet's
/// steps, as the picker shows them.
QList<_DrelFunction> innerFunctions();

} // namespace standalone
