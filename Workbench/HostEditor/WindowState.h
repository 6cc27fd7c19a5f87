#pragma once

#include "Workbench/HostEditor/Picture.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

// What the window has of an earlier run. What is not known is left empty.
struct WindowState {
    std::optional<PixelSize> size; // of the window when it is not maximized
    bool isMaximized = false;
    std::optional<int> panelWidth;
    double magnification = 1; // of the timeline
    std::vector<std::string> recentFiles; // the newest first

    friend bool operator==(WindowState const&, WindowState const&) = default;
};

// Where the state is kept, below the user's folder for such.
[[nodiscard]] std::filesystem::path windowStateFile();

struct ReadState {
    WindowState state;
    std::string problem; // one line for the user; empty when all is well, also when there is no file yet
};

// Values that make no sense count as not known. A file that cannot be read is told and left out.
[[nodiscard]] ReadState readWindowState(std::filesystem::path const& file);

// Replaces the file as a whole; the problem in one line when it cannot be written, else nothing.
[[nodiscard]] std::string writeWindowState(std::filesystem::path const& file, WindowState const& state);

} // namespace workbench
