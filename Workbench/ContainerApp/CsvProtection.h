#pragma once

#include <string>
#include <string_view>

namespace workbench {

// Spreadsheets take a text that begins like a formula for one. An apostrophe in front of it prevents that;
// texts that look protected already get one more, so that `unprotected` gives back every text as it was.
[[nodiscard]] std::string protectedFromFormulas(std::string_view text);

// Takes the apostrophe off that `protectedFromFormulas` puts in front, and no other.
[[nodiscard]] std::string unprotected(std::string_view text);

} // namespace workbench
