#include "Workbench/ContainerApp/TemporaryFolder.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>

namespace workbench {

TemporaryFolder::TemporaryFolder() {
    auto pattern = (std::filesystem::temp_directory_path() / "zelvix-container.XXXXXX").string();
    folder = mkdtemp(pattern.data());
}

TemporaryFolder::~TemporaryFolder() {
    auto error = std::error_code{};
    for (auto const& entry : std::filesystem::recursive_directory_iterator{folder, error})
        if (entry.is_directory())
            std::filesystem::permissions(entry, std::filesystem::perms::owner_all, error);
    std::filesystem::remove_all(folder, error);
}

std::string TemporaryFolder::names() const {
    auto sorted = std::set<std::string>{};
    for (auto const& entry : std::filesystem::directory_iterator{folder})
        sorted.insert(entry.path().filename().string());
    auto text = std::string{};
    for (auto const& name : sorted)
        text += (text.empty() ? "" : " ") + name;
    return text;
}

std::string contentsOf(std::string const& file) {
    auto stream = std::ifstream{file, std::ios::binary};
    return {std::istreambuf_iterator<char>{stream}, {}};
}

void writeFile(std::string const& file, std::string const& contents) {
    std::ofstream{file, std::ios::binary} << contents;
}

std::string outputOf(std::string const& command) {
    auto const pipe = std::unique_ptr<std::FILE, int (*)(std::FILE*)>{popen(command.c_str(), "r"), pclose};
    auto output = std::string{};
    char piece[4096];
    while (auto const count = std::fread(piece, 1, sizeof piece, pipe.get()))
        output.append(piece, count);
    return output;
}

} // namespace workbench
