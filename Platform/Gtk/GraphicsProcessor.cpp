#include "Platform/Gtk/GraphicsProcessor.h"

#include <glib.h>

#include <algorithm>
#include <string>
#include <system_error>

namespace fcp {

bool hasGraphicsProcessor(std::filesystem::path const& devices) {
    std::error_code unreadable;
    std::filesystem::directory_iterator const entries(devices, unreadable);
    return std::any_of(begin(entries), end(entries), [](std::filesystem::directory_entry const& entry) {
        return entry.path().filename().string().starts_with("renderD");
    });
}

void preferPlainDrawingWithoutGraphicsProcessor() {
    if (!hasGraphicsProcessor())
        g_setenv("GSK_RENDERER", "cairo", FALSE);
}

} // namespace fcp
