#pragma once

#include "standalone/codegen/applet_source.h"

#include <QString>

namespace standalone {

/// What the model holds of an applet, as the code generator takes it. The blocks are shared with
/// the model, so the generator runs on the GUI thread as well.
codegen::AppletSource readAppletSource(const QString& appName, const QString& targetSequenceId,
                                       bool forVci);

} // namespace standalone
