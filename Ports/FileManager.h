#pragma once

#include <string>

namespace fcp {

class FileManager {
public:
    virtual ~FileManager() = default;

    // True for anything at `path`, a folder included. Follows links.
    [[nodiscard]] virtual bool fileExists(std::string const& path) const = 0;
};

} // namespace fcp
