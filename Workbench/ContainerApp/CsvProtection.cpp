#include "Workbench/ContainerApp/CsvProtection.h"

namespace workbench {

namespace {

bool beginsLikeFormula(std::string_view text) {
    auto const begin = text.find_first_not_of('\'');
    return begin != std::string_view::npos &&
           std::string_view{"=+-@"}.find(text[begin]) != std::string_view::npos;
}

} // namespace

std::string protectedFromFormulas(std::string_view text) {
    return (beginsLikeFormula(text) ? "'" : "") + std::string{text};
}

std::string unprotected(std::string_view text) {
    auto const isProtected = text.starts_with('\'') && beginsLikeFormula(text);
    return std::string{text.substr(isProtected ? 1 : 0)};
}

} // namespace workbench
