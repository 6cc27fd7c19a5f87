#pragma once

#include <cstdint>

namespace fcp {

struct CMTime;

// The platform's arithmetic on media times. Any thread.
class MediaTime {
public:
    virtual ~MediaTime() = default;

    // Not a number for an invalid or indefinite time, an infinity for an infinite one.
    [[nodiscard]] virtual double seconds(CMTime time) const = 0;

    // How a value that lies between two ticks is rounded is the platform's affair. Any seconds are safe.
    [[nodiscard]] virtual CMTime makeWithSeconds(double seconds, std::int32_t preferredTimescale) const = 0;
};

} // namespace fcp
