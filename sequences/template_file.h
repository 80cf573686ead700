#pragma once

/// The templates of the open project, "processtemplate.peTemp" in its folder. GUI thread only.
namespace template_file {

/// Reads them into the model service, once a process. A missing file gives none.
void loadOnce();

/// Writes those that the model service holds, atomically; a failure goes to the log. Nothing
/// happens without a project.
void save();

} // namespace template_file
