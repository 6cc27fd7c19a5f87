#pragma once

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <stdlib.h>
#include <string>
#include <system_error>

namespace workbench {

// A folder of its own for one test, gone at its end.
class TemporaryFolder final {
public:
    TemporaryFolder() {
        auto pattern = (std::filesystem::temp_directory_path() / "zelvix-editor-test.XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            throw std::runtime_error{"no temporary folder"};
        path = pattern;
    }

    ~TemporaryFolder() {
        std::error_code error;
        std::filesystem::remove_all(path, error);
    }

    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;

    std::filesystem::path write(std::string const& name, std::string const& content) const {
        std::ofstream{path / name, std::ios::binary} << content;
        return path / name;
    }

    std::filesystem::path path;
};

} // namespace workbench
