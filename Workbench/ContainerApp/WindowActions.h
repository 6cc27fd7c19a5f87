#pragma once

#include <functional>
#include <string>

namespace workbench {

// What a person asks for in the window. All are set; they run on the main thread.
struct WindowActions {
    std::function<void()> close;
    std::function<void(std::string const& key)> showSequence;
    std::function<void(std::string const& format)> startExport; // of the sequence that is shown
    std::function<void()> cancelExport;
    std::function<void()> changeFolder;
    std::function<void()> import; // into the sequence that is shown
};

} // namespace workbench
