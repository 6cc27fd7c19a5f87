#include "Platform/Gtk/GLibUrlParser.h"

#include "Platform/Gtk/Conversions.h"

namespace fcp {

std::optional<Url> GLibUrlParser::parse(std::string const& text) const {
    return parseUrl(text);
}

} // namespace fcp
