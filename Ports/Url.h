#pragma once

#include <optional>
#include <string>

namespace fcp {

// An address as the platform's URL parser read it. The text is never rewritten and the host keeps its
// letter case, because the navigation policy compares it exactly.
struct Url {
    std::string absoluteString;
    std::optional<std::string> host; // without port; none for "about:blank", data: and the like
};

class UrlParser {
public:
    virtual ~UrlParser() = default;

    // None when the text makes no URL. Main thread only.
    [[nodiscard]] virtual std::optional<Url> parse(std::string const& text) const = 0;
};

} // namespace fcp
