#pragma once

#include "FcpExtension/ProExtensionHost.h"

#include <filesystem>
#include <string>
#include <variant>

namespace workbench {

// Where the panel's module is when nobody says: beside the program as it is built, else where it is
// installed.
[[nodiscard]] std::filesystem::path defaultPanelModule();

// Loads the module and makes a panel: its widget, with a floating reference, or the reason in one line. Main
// thread, after the toolkit and the host. A module stays loaded for good.
[[nodiscard]] std::variant<GtkWidget*, std::string> makePanel(std::filesystem::path const& module);

} // namespace workbench
