#pragma once

#include "Ports/UuidGenerator.h"

namespace fcp {

class CocoaUuidGenerator final : public UuidGenerator {
public:
    [[nodiscard]] std::string uuid() override;
};

} // namespace fcp
