#pragma once

class ReportBuffer;

/// Writes the waiting reports out when the applet's code crashes or leaves by exit(), so that the
/// editor sees the step that did it, and notes why where the signal alone doesn't tell. The process
/// then ends as it would have ended anyway, and no end record is ever sent from here.
///
/// A process that the applet's code forks is cut off from the editor; the supervisor ends it.
namespace crash_guard {

/// @p reports lives to the end of the process.
void install(ReportBuffer& reports);

} // namespace crash_guard
