#pragma once

#include "model/process_records.h"

#include <QString>

#include <vector>

/// The variables that the loops around a step bring with them: they are no variables of the
/// service, but the step may use them. GUI thread only.
namespace loop_variables {

/// Those that are in sight of the step, the outermost first; none for an unknown step.
std::vector<processVariable> around(const QString& appName, const QString& sequenceId,
                                    const std::string& stepId);

/// What a loop's own header defines, "int i = 0": type and name; empty for any other text.
processVariable definedBy(const std::string& initialisation);

} // namespace loop_variables
