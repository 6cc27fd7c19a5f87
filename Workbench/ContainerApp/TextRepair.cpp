#include "Workbench/ContainerApp/TextRepair.h"

#include <glib.h>

namespace workbench {

namespace {

constexpr char const* replacement = "\xEF\xBF\xBD";

bool isCarried(gunichar character) {
    auto const isNoncharacter =
        (character >= 0xFDD0 && character <= 0xFDEF) || (character & 0xFFFE) == 0xFFFE;
    return character != 0 && !isNoncharacter;
}

} // namespace

std::string carriedByBus(std::string const& text) {
    auto carried = std::string{};
    auto const* const end = text.data() + text.size();
    for (auto const* at = text.data(); at < end;) {
        auto const* const next = g_utf8_find_next_char(at, nullptr);
        if (isCarried(g_utf8_get_char(at)))
            carried.append(at, next);
        else
            carried += replacement;
        at = next;
    }
    return carried;
}

} // namespace workbench
