#pragma once

#include "Ports/FileManager.h"

namespace fcp {

class CocoaFileManager final : public FileManager {
public:
    // False also where the process may not look.
    [[nodiscard]] bool fileExists(std::string const& path) const override;
};

} // namespace fcp
