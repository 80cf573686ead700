#pragma once

#include <string>

/// Which applets changed since their last successful compile. GUI thread only.
namespace standalone {

/// True from appNeedUpdate, or from a change of the applet's model or of a variable that it can
/// see, till setCompileSucessState. False for an applet of which nothing is known. The applet's
/// name is in the local 8-bit encoding.
bool needsUpdate(const std::string& appName);

void markChanged(const std::string& appName);
void markAllChanged(); ///< every applet of the model
void markCompiled(const std::string& appName);

} // namespace standalone
