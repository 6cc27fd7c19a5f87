#include "Platform/Gtk/GLibUuidGenerator.h"

#include "Platform/Gtk/GRef.h"

namespace fcp {

std::string GLibUuidGenerator::uuid() {
    GCharPtr const lowerCase(g_uuid_string_random());
    GCharPtr const upperCase(g_ascii_strup(lowerCase.get(), -1));
    return upperCase.get();
}

} // namespace fcp
