#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace fcp::test {

inline constexpr char const* webProcess = "WebKitWebProces"; // as the kernel cuts the name
inline constexpr char const* networkProcess = "WebKitNetworkPr";

// The engine's helpers of this name that descend from this very process, oldest first. Those of other
// programs are never among them.
[[nodiscard]] std::vector<pid_t> engineProcesses(std::string const& name);

// Ends them at once, as a crash would; the number of those that were there.
std::size_t killEngineProcesses(std::string const& name);

} // namespace fcp::test
