#pragma once

namespace standalone {

/// Drops what belongs to the open project and is read once: its quick steps, templates and global
/// variables. An application calls it when it changes the project, before it opens the next editor.
/// GUI thread only.
void forgetProjectTables();

} // namespace standalone
