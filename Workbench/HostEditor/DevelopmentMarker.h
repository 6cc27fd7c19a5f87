#pragma once

#include <filesystem>
#include <string>
#include <sys/types.h>
#include <vector>

namespace workbench {

// The file by which the panel is told to load the review page from this machine. While the workbench runs it
// is there; afterwards it is gone again, unless somebody else had put it there.
class DevelopmentMarker final {
public:
    enum class Use { Select, LeaveAlone };

    struct Paths {
        std::filesystem::path development = "/tmp/zelvix-fcp-dev";
        std::filesystem::path diagnostic = "/tmp/zelvix-fcp-diag";
    };

    DevelopmentMarker(Use use, Paths paths);
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
    [[nodiscard]] bool isStillOurs() const;

    Paths paths;
    bool isMade = false;
    dev_t device = 0; // of the file that was made
    ino_t node = 0;
    std::vector<std::string> found;
};

} // namespace workbench
