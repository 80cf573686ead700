#pragma once

#include "model/DrelFunction.h"

#include <QList>

namespace standalone {

/// The functions that runner/applet_runtime.h offers to an applet's steps, as the picker shows
/// them.
QList<_DrelFunction> innerFunctions();

} // namespace standalone
