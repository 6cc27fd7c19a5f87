#pragma once

#include <filesystem>
#include <string>

namespace workbench {

// An empty folder that goes with its owner.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();

    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;

    [[nodiscard]] std::string path() const { return folder.string(); }

    [[nodiscard]] std::string operator/(std::string const& name) const { return (folder / name).string(); }

    // The names in it, sorted.
    [[nodiscard]] std::string names() const;

private:
    std::filesystem::path folder;
};

// The bytes of a file; empty when it is missing.
[[nodiscard]] std::string contentsOf(std::string const& file);

void writeFile(std::string const& file, std::string const& contents);

// Runs a shell command and returns what it wrote on standard output.
[[nodiscard]] std::string outputOf(std::string const& command);

} // namespace workbench
