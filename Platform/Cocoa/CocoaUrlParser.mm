#include "Platform/Cocoa/CocoaUrlParser.h"

#include "Platform/Cocoa/Conversions.h"

namespace fcp {

std::optional<Url> CocoaUrlParser::parse(std::string const& text) const {
    return parseUrl(text);
}

} // namespace fcp
