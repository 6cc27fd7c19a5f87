#include "Workbench/HostEditor/RecentFiles.h"

#include <algorithm>
#include <ranges>

namespace workbench {

RecentFiles::RecentFiles(std::vector<std::string> paths) {
    for (auto const& path : std::views::reverse(paths))
        if (!path.empty())
            add(path);
}

void RecentFiles::add(std::string const& path) {
    std::erase(files, path);
    files.insert(files.begin(), path);
    files.resize(std::min(files.size(), Most));
}

} // namespace workbench
