#pragma once

#include <filesystem>
#include <stdexcept>
#include <stdlib.h>
#include <string_view>
#include <system_error>

namespace fcp::bench {

// An empty folder that goes with its owner. Throws std::runtime_error when there is none to be had.
class TemporaryFolder {
public:
    TemporaryFolder() {
        auto pattern = (std::filesystem::temp_directory_path() / "zelvix-bench.XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            throw std::runtime_error("no temporary folder");
        folder = pattern;
    }

    ~TemporaryFolder() {
        std::error_code error;
        std::filesystem::remove_all(folder, error);
    }

    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;

    [[nodiscard]] std::filesystem::path const& path() const { return folder; }

    [[nodiscard]] std::filesystem::path operator/(std::string_view name) const { return folder / name; }

private:
    std::filesystem::path folder;
};

} // namespace fcp::bench
