#pragma once

#include <string_view>

namespace fcp {

// Prints the message on standard error and aborts. For programming errors only: what comes from outside the
// process is never fatal.
[[noreturn]] void fatalError(std::string_view message);

inline constexpr std::string_view missingReference =
    "Unexpectedly found nil while implicitly unwrapping an Optional value";
inline constexpr std::string_view failedConversion =
    "Unexpectedly found nil while unwrapping an Optional value";

// What set-up always fills. Works on any pointer type; its absence is a programming error.
template <typename Pointer>
[[nodiscard]] auto& required(Pointer const& pointer) {
    if (!pointer)
        fatalError(missingReference);
    return *pointer;
}

} // namespace fcp
