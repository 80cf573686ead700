#pragma once

#include "runner/applet_module.h"
#include "runner/report_buffer.h"

/// The functions that the process hands to an applet's module.
namespace runtime_api {

/// Both must live to the end of the process.
void bind(ReportBuffer& reports);
/// Whose sequences and steps the reports are about.
void setModule(const applet_module& module);

const applet_runtime_api& table();

/// Appends what the log has left out of steps that failed; while the module is there.
void logFailureTotals();

/// Appends a line to the log.
void log(int level, const char* text);

} // namespace runtime_api
