#include "Platform/Gtk/Conversions.h"

#include "FcpExtension/EntranceRules.h"
#include "Platform/Gtk/GRef.h"

#include <cstddef>
#include <string_view>
#include <utility>

namespace fcp {

namespace {

bool isSurrogateEscape(std::string const& text, std::size_t backslash) {
    if (backslash + 5 >= text.size() || text[backslash + 1] != 'u')
        return false;
    char const first = text[backslash + 2];
    char const second = text[backslash + 3];
    return (first == 'd' || first == 'D') && second >= '8';
}

// One walk for both dangers: surrogate escapes, which no parser takes, and nesting that would exhaust the
// stack where values are copied and written. The engine writes whole pairs as plain text, so an escape is
// always one that stands alone. False when the nesting is too deep.
bool repair(std::string& text) {
    int depth = 0;
    bool inString = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        char const c = text[at];
        if (inString && c == '\\') {
            if (isSurrogateEscape(text, at))
                text.replace(at + 2, 4, "fffd");
            ++at;
        } else if (c == '"') {
            inString = !inString;
        } else if (!inString && (c == '{' || c == '[')) {
            if (++depth > maximumNesting)
                return false;
        } else if (!inString && (c == '}' || c == ']')) {
            --depth;
        }
    }
    return true;
}

// JSON has no text for a number that is not finite: the engine writes null in its place.
void recoverNumber(JSCValue* object, Json& body, char const* name) {
    auto const member = body.find(name);
    if (member == body.end() || !member->is_null())
        return;
    auto const value = GRef<JSCValue>::adopt(jsc_value_object_get_property(object, name));
    if (jsc_value_is_number(value.get()))
        *member = jsc_value_to_double(value.get());
}

} // namespace

std::optional<Json> messageBody(JSCValue* value) {
    GCharPtr const text(jsc_value_to_json(value, 0));
    if (!text) {
        // A cyclic value leaves an exception behind that would spoil the context for every later message.
        jsc_context_clear_exception(jsc_value_get_context(value));
        return std::nullopt;
    }
    if (!std::string_view(text.get()).starts_with('{'))
        return std::nullopt; // no dictionary: not worth parsing
    auto body = parseEngineJson(text.get());
    if (!body)
        return std::nullopt;
    for (auto const* name : membersWithAnyNumber)
        recoverNumber(value, *body, name);
    return body;
}

std::optional<Json> parseEngineJson(std::string text) {
    if (!repair(text))
        return std::nullopt;
    auto value = Json::parse(text, nullptr, false);
    if (value.is_discarded())
        return std::nullopt;
    return value;
}

std::optional<Url> parseUrl(std::string const& text) {
    if (!mayBeAddress(text))
        return std::nullopt;
    constexpr auto flags = static_cast<GUriFlags>(G_URI_FLAGS_PARSE_RELAXED | G_URI_FLAGS_ENCODED);
    auto const uri = GRef<GUri>::adopt(g_uri_parse(text.c_str(), flags, nullptr));
    if (!uri)
        return std::nullopt;
    char const* const host = g_uri_get_host(uri.get());
    return readAddress(text, host ? host : "");
}

std::optional<Url> urlFromEngine(char const* text) {
    if (!text || !*text)
        return std::nullopt;
    return parseUrl(text).value_or(Url{text, std::nullopt});
}

LoadFailure loadFailure(GError const& error) {
    char const* domain = g_quark_to_string(error.domain);
    return {domain ? domain : "", error.code, description(error)};
}

std::string description(GError const& error) {
    return error.message ? error.message : "";
}

} // namespace fcp
