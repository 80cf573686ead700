#pragma once

#include <QString>

/// The tables that every applet of the process shares: step kinds and default variables, which come
/// with the application, and the quick steps and global variables of the open project. GUI thread
/// only.
namespace default_tables {

/// Where the application's tables are, "defaultStep.json" and "defaultVariable.json". Before the
/// first editor is made; empty, as it is without a call: "Business/Teststand" beside the program.
void setFolder(const QString& folder);
/// The file of the table of step kinds.
QString stepTable();

/// Loads each table that the model service says is not loaded yet. A missing file gives an empty
/// table.
void loadOnce();

} // namespace default_tables
