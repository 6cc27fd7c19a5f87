#pragma once

#include "Workbench/HostEditor/MarkerGuard.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

// The file by which the panel is told to load the review page from this machine. While the workbench runs it
// is there; afterwards it is gone again, however the workbench ended, unless somebody else had put it there.
// Best made before the process has threads.
class DevelopmentMarker final {
public:
    enum class Use { Select, LeaveAlone };

    struct Paths {
        std::filesystem::path development = "/tmp/zelvix-fcp-dev";
        std::filesystem::path diagnostic = "/tmp/zelvix-fcp-diag";
    };

    DevelopmentMarker(Use use, Paths files);
    ~DevelopmentMarker();
    DevelopmentMarker(DevelopmentMarker const&) = delete;
    DevelopmentMarker& operator=(DevelopmentMarker const&) = delete;

    // Whether the panel is going to load from this machine.
    [[nodiscard]] bool isPresent() const;

    // What the user has to know about the files that were found; one line each.
    [[nodiscard]] std::vector<std::string> const& messages() const { return found; }

private:
    void make();
    void lookAround(Use use);

    Paths paths;
    std::optional<MarkerGuard> guard; // of the file that was made
    std::vector<std::string> found;
};

} // namespace workbench
