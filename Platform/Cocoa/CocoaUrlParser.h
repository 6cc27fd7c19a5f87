#pragma once

#include "Ports/Url.h"

namespace fcp {

// Reads addresses the way the web views of this platform do.
class CocoaUrlParser final : public UrlParser {
public:
    [[nodiscard]] std::optional<Url> parse(std::string const& text) const override;
};

} // namespace fcp
