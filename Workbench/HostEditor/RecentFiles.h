#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace workbench {

// The files that were opened last, the newest first, each once.
class RecentFiles final {
public:
    static constexpr std::size_t Most = 12;

    RecentFiles() = default;
    explicit RecentFiles(std::vector<std::string> paths);

    void add(std::string const& path);

    [[nodiscard]] std::vector<std::string> const& paths() const { return files; }

private:
    std::vector<std::string> files;
};

} // namespace workbench
