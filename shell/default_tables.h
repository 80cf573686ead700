#pragma once

/// The tables that every applet of the process shares: step kinds, quick steps and global
/// variables, from the application's folder and the open project. GUI thread only.
namespace default_tables {

/// Loads each table that the model service says is not loaded yet. A missing file gives an empty
/// table.
void loadOnce();

} // namespace default_tables
