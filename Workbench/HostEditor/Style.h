#pragma once

namespace workbench {

// Installs the editor's own look for this display. It names only the editor's own widgets: the panel in the
// same window keeps its look. Once, after the toolkit.
void installStyle();

} // namespace workbench
