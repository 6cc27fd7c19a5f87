#include "Platform/Gtk/GioWorkspace.h"

#include <gio/gio.h>

namespace fcp {

// Without a callback the outcome is dropped: a desktop without a handler is nothing that a panel can mend.
void GioWorkspace::open(Url const& url) {
    g_app_info_launch_default_for_uri_async(url.absoluteString.c_str(), nullptr, nullptr, nullptr, nullptr);
}

} // namespace fcp
