#include "FcpExtension/EventScript.h"

#include <array>
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

std::array<char, 4> base64Group(unsigned bits) {
    return {alphabet[bits >> 18 & 63], alphabet[bits >> 12 & 63], alphabet[bits >> 6 & 63],
            alphabet[bits & 63]};
}

// Standard alphabet, padded, without line breaks.
void appendBase64(std::string& text, std::string_view bytes) {
    auto const byte = [bytes](std::size_t i) -> unsigned {
        return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U;
    };
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        auto const group = base64Group(byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2));
        text.append(group.data(), group.size());
    }
    auto const padding = (3 - bytes.size() % 3) % 3;
    text.replace(text.size() - padding, padding, padding, '=');
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
