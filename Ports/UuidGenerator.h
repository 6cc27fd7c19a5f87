#pragma once

#include <string>

namespace fcp {

class UuidGenerator {
public:
    virtual ~UuidGenerator() = default;

    // A fresh random UUID: upper-case hexadecimal in 8-4-4-4-12 groups.
    [[nodiscard]] virtual std::string uuid() = 0;
};

} // namespace fcp
