#pragma once

#include <QBrush>
#include <QPalette>
#include <QString>

/// What a report of a run means for the row of its step. Values only, any thread.
namespace run_states {

enum class Outcome {
    Started,   ///< the row gets a progress bar at 0
    Running,   ///< the bar moves
    Succeeded, ///< the bar gives way to text and colour
    Failed,
    Stopped ///< a success as far as the run goes, of a row that was cut short by a stop
};

/// @p progress from 0 to 100; a step starts at exactly 0 and ends well at exactly 100. A negative
/// @p result is a failure at any other progress than 0.
Outcome outcome(double progress, int result);

/// How a row ends that gets no report of its own end: by the result reported last. A stop of the
/// run is no failure, but shows.
Outcome closingOutcome(int lastResult, bool isStopped = false);

/// The text and the background of the state cell; empty and transparent but for the ends.
QString text(Outcome outcome);
QBrush background(Outcome outcome, const QPalette& palette = QPalette());

/// The progress of the whole run, when the block at @p place of @p count reports @p progress.
double totalProgress(int place, int count, double progress);

} // namespace run_states
