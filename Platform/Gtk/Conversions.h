#pragma once

#include "Platform/Gtk/NavigationErrors.h"
#include "Ports/Json.h"
#include "Ports/Url.h"

#include <gio/gio.h>
#include <jsc/jsc.h>

#include <optional>
#include <string>

namespace fcp {

// The body of a message that a page posted, cleaned: an object, every text valid UTF-8 (lone surrogates
// become U+FFFD, NUL stays), at most 512 levels deep. A number that is not finite stays what it is in
// "seconds" and "threshold" and is null elsewhere. None for every other kind of value, and for a cyclic one.
// Main thread only.
[[nodiscard]] std::optional<Json> messageBody(JSCValue* value);

// JSON text as the engine writes it, in which lone surrogates stand as escapes. None when it is nested too
// deep or is no JSON. Any thread.
[[nodiscard]] std::optional<Json> parseEngineJson(std::string text);

// An absolute address, as lenient as the engine itself: percent signs that begin no escape pass. The letter
// case of the host stays. None when the text makes no address. Any thread.
[[nodiscard]] std::optional<Url> parseUrl(std::string const& text);

// An address that the engine shows or is about to load. It reads "" and null as "no address"; what the engine
// takes for an address is one, though this parser would not read it.
[[nodiscard]] std::optional<Url> urlFromEngine(char const* text);

// An error of no domain gives an empty one.
[[nodiscard]] LoadFailure loadFailure(GError const& error);

[[nodiscard]] std::string description(GError const& error);

} // namespace fcp
