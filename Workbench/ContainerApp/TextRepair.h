#pragma once

#include <string>

namespace workbench {

// `text`, which is UTF-8, as the bus carries it: NUL and the noncharacters of Unicode become U+FFFD. A
// comment that holds one of them could never be told to a page.
[[nodiscard]] std::string carriedByBus(std::string const& text);

} // namespace workbench
