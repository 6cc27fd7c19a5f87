#pragma once

#include <string>
#include <vector>

namespace fcp::test {

// The addresses that were handed to the desktop since the last call.
[[nodiscard]] std::vector<std::string> takeOpenedAddresses();

} // namespace fcp::test
