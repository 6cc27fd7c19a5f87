#pragma once

#include <string>

namespace workbench {

// The whole text of a file that is to be imported. Throws ImportError for what cannot be read, is far larger
// than any list of comments, or is not UTF-8.
[[nodiscard]] std::string textOfFile(std::string const& file);

} // namespace workbench
