#pragma once

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace fcp::bench {

inline constexpr char const* busPath = "/com/zelvix/fcp";
inline constexpr char const* panelInterface = "com.zelvix.fcp";

// The floor has an interface of its own, so that neither side hears what the other is answered.
inline constexpr char const* floorInterface = "com.zelvix.bench";

inline constexpr char const* commandMember = "containerCommand";
inline constexpr char const* responseMember = "containerResponse";

// Ends the process with a line on standard error when sd-bus reports an error.
inline void insist(int result, char const* what) {
    if (result >= 0)
        return;
    std::fprintf(stderr, "%s: %s\n", what, std::strerror(-result));
    std::exit(1);
}

} // namespace fcp::bench
