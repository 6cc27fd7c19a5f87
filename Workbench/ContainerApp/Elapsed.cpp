#include "Workbench/ContainerApp/Elapsed.h"

#include <array>
#include <charconv>

namespace workbench {

std::string elapsedSince(std::chrono::steady_clock::time_point begun) {
    using Milliseconds = std::chrono::duration<double, std::milli>;
    auto digits = std::array<char, 64>{};
    auto const elapsed = Milliseconds{std::chrono::steady_clock::now() - begun}.count();
    // Not printf: the toolkit sets the person's locale, which may write a comma.
    auto const end =
        std::to_chars(digits.data(), digits.data() + digits.size(), elapsed, std::chars_format::fixed, 2);
    return " (" + std::string{digits.data(), end.ptr} + " ms)";
}

} // namespace workbench
