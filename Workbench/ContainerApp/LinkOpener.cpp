#include "Workbench/ContainerApp/LinkOpener.h"

#include <gio/gio.h>

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

namespace workbench {

namespace {

struct UriUnref {
    void operator()(GUri* uri) const { g_uri_unref(uri); }
};

bool hasControlOrSpace(std::string const& url) {
    return std::ranges::any_of(url,
                               [](char character) { return g_ascii_iscntrl(character) || character == ' '; });
}

void launched(GObject*, GAsyncResult* result, void* data) {
    auto const done = std::unique_ptr<LinkOpener::Opened>(static_cast<LinkOpener::Opened*>(data));
    (*done)(g_app_info_launch_default_for_uri_finish(result, nullptr) != 0);
}

} // namespace

bool isOpenable(std::string const& url) {
    if (hasControlOrSpace(url))
        return false;
    auto const flags = static_cast<GUriFlags>(G_URI_FLAGS_PARSE_RELAXED | G_URI_FLAGS_ENCODED);
    auto const uri = std::unique_ptr<GUri, UriUnref>{g_uri_parse(url.c_str(), flags, nullptr)};
    if (!uri)
        return false;
    // GLib gives the scheme in lower case.
    auto const scheme = std::string_view{g_uri_get_scheme(uri.get())};
    auto const* host = g_uri_get_host(uri.get());
    return scheme == "mailto" || ((scheme == "http" || scheme == "https") && host && *host);
}

void LinkOpener::open(std::string const& url, Opened done) {
    if (!isOpenable(url)) {
        done(false);
        return;
    }
    tameProcessBus();
    g_app_info_launch_default_for_uri_async(url.c_str(), nullptr, nullptr, launched,
                                            new Opened{std::move(done)});
}

LinkOpener::~LinkOpener() = default;

void LinkOpener::Unref::operator()(_GDBusConnection* ended) const {
    g_object_unref(ended);
}

// GIO takes the process-wide connection to launch things, and by default that one ends the process with the
// bus. It is held, so that the next launch does not open another one.
void LinkOpener::tameProcessBus() {
    if (connection)
        return;
    connection.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (connection)
        g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
}

} // namespace workbench
