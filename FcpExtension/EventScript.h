#pragma once

#include <string>
#include <string_view>

namespace fcp {

// The script that carries one event into the page: it decodes `payload`, which is JSON text, and dispatches a
// CustomEvent of that name on `window`. The payload travels as base64, so that no text of it can end the
// script's string. The name is inserted as it is: event names are our own and hold no quote.
[[nodiscard]] std::string eventScript(std::string_view event, std::string_view payload);

} // namespace fcp
