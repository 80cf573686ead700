#pragma once

#include <QString>

/// Service facade: the host's log and progress display. GUI thread only.
namespace sdk_ui_interface {
namespace log {

/// Writes an error to the host's log, a text in Chinese for its user that may hold several lines; 0
/// on success.
int log_error(const QString& text);

/// Opens a progress of 0..@p maximum and returns its handle, 0 or greater; -1 if the host shows
/// none. The editor opens one for each run and finishes it at the run's end, or when its widget is
/// destroyed. A finished handle is not used again; operations on an unknown one do nothing.
int create_progress(const QString& title, int maximum, const QString& text);
void set_progress_value(int handle, int value);
void finish_progress(int handle);

} // namespace log
} // namespace sdk_ui_interface
