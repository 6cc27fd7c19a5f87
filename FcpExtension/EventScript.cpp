#include "FcpExtension/EventScript.h"

#include <algorithm>
#include <cstddef>

namespace fcp {

namespace {

constexpr std::string_view beforePayload = "(function() {\n  try {\n    var payload = JSON.parse(atob('";
constexpr std::string_view beforeEvent = "'));\n    window.dispatchEvent(new CustomEvent('";
constexpr std::string_view beforeEventAgain =
    "', { detail: payload }));\n  } catch(e) {\n    console.error('[Zelvix] Failed to dispatch ";
constexpr std::string_view end = ":', e);\n  }\n})();";

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::size_t base64Length(std::size_t bytes) {
    return (bytes + 2) / 3 * 4;
}

// Four characters for three bytes.
char* writeBase64Group(char* out, unsigned bits) {
    *out++ = alphabet[bits >> 18 & 63];
    *out++ = alphabet[bits >> 12 & 63];
    *out++ = alphabet[bits >> 6 & 63];
    *out++ = alphabet[bits & 63];
    return out;
}

// Standard alphabet, padded, without line breaks.
void appendBase64(std::string& text, std::string_view bytes) {
    auto const byte = [bytes](std::size_t i) -> unsigned { return static_cast<unsigned char>(bytes[i]); };
    auto const begin = text.size();
    text.resize(begin + base64Length(bytes.size()));
    char* out = text.data() + begin;
    std::size_t i = 0;
    for (; i + 3 <= bytes.size(); i += 3)
        out = writeBase64Group(out, byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2));
    auto const left = bytes.size() - i;
    if (left == 0)
        return;
    out = writeBase64Group(out, byte(i) << 16 | (left == 2 ? byte(i + 1) << 8 : 0U));
    std::fill(out - (3 - left), out, '=');
}

} // namespace

std::string eventScript(std::string_view event, std::string_view payload) {
    std::string script;
    script.reserve(beforePayload.size() + base64Length(payload.size()) + beforeEvent.size() +
                   beforeEventAgain.size() + end.size() + 2 * event.size());
    script += beforePayload;
    appendBase64(script, payload);
    script += beforeEvent;
    script += event;
    script += beforeEventAgain;
    script += event;
    script += end;
    return script;
}

} // namespace fcp
