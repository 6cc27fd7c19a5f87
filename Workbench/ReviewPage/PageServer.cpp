#include "Workbench/ReviewPage/PageServer.h"

#include "Platform/Gtk/GRef.h"
#include "Workbench/ReviewPage/SessionRoutes.h"

#include <libsoup/soup.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

extern "C" {
#include "Workbench/ReviewPage/ReviewPageResources.h" // made at build time, a C header
}

namespace workbench {

namespace {

constexpr auto PagePath = "/fcp-panel/login";
constexpr auto ResourceFolder = "/com/zelvix/ReviewPage/";

struct PageFile {
    std::string_view path;
    char const* name;
    char const* contentType;
};

constexpr auto Html = "text/html; charset=utf-8";
constexpr auto Css = "text/css; charset=utf-8";
constexpr auto JavaScript = "text/javascript; charset=utf-8";

// The only paths that exist: a request is compared with them, never turned into a name.
constexpr std::array PageFiles{
    PageFile{PagePath, "login.html", Html},
    PageFile{"/fcp-panel/panel.css", "panel.css", Css},
    PageFile{"/fcp-panel/panel.js", "panel.js", JavaScript},
};

constexpr std::array SafetyHeaders{
    std::pair{
        "Content-Security-Policy",
        "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; connect-src 'self'; "
        "base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
    std::pair{"X-Content-Type-Options", "nosniff"},
    std::pair{"Referrer-Policy", "no-referrer"},
    std::pair{"Cross-Origin-Opener-Policy", "same-origin"},
    std::pair{"Cross-Origin-Resource-Policy", "same-origin"},
    std::pair{"Cache-Control", "no-store"},
};

// A foreign name that resolves to this machine must not reach the page as if it were its own origin.
bool isOwnHost(std::string_view host, std::uint16_t port) {
    auto const suffix = ":" + std::to_string(port);
    return host == "localhost" + suffix || host == "127.0.0.1" + suffix || host == "[::1]" + suffix;
}

void addHeaders(SoupServerMessage* message) {
    auto* headers = soup_server_message_get_response_headers(message);
    for (auto const& [name, value] : SafetyHeaders)
        soup_message_headers_replace(headers, name, value);
}

// The toolkit's table knows no text for 421.
char const* reasonFor(SoupStatus status) {
    return status == SOUP_STATUS_MISDIRECTED_REQUEST ? "Misdirected Request" : nullptr;
}

std::string contentOf(PageFile const& file) {
    auto const name = std::string{ResourceFolder} + file.name;
    auto const bytes = fcp::GRef<GBytes>::adopt(g_resource_lookup_data(
        review_page_get_resource(), name.c_str(), G_RESOURCE_LOOKUP_FLAGS_NONE, nullptr));
    gsize size = 0;
    auto const* data = static_cast<char const*>(g_bytes_get_data(bytes.get(), &size));
    return {data, size};
}

// A block of data, which the page's policy for scripts lets through.
std::string withTask(std::string html, std::string const& task) {
    constexpr std::string_view head = "<head>";
    if (auto const place = html.find(head); place != std::string::npos && !task.empty())
        html.insert(place + head.size(),
                    R"(<script type="application/json" id="session">)" + task + "</script>");
    return html;
}

void serveFile(SoupServerMessage* message, std::string_view path, std::string const& task) {
    auto const file = std::ranges::find(PageFiles, path, &PageFile::path);
    if (file == PageFiles.end()) {
        soup_server_message_set_status(message, SOUP_STATUS_NOT_FOUND, nullptr);
        return;
    }
    auto const text = withTask(contentOf(*file), path == PagePath ? task : std::string{});
    soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
    soup_server_message_set_response(message, file->contentType, SOUP_MEMORY_COPY, text.data(), text.size());
}

std::string problemText(std::uint16_t port, GError const& error) {
    auto const number = std::to_string(port);
    if (g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_ADDRESS_IN_USE))
        return "Port " + number +
               " is taken by another program, so the review page is not served and the panel is not "
               "loaded. End that program, or start with --no-page to load the page that it serves.";
    return "The review page cannot be served on port " + number + ": " + error.message;
}

} // namespace

// One stretch of listening. A new server each time: what a stopped one leaves behind is nobody's business.
class PageServer::Listener {
public:
    explicit Listener(SessionDesk desk)
        : routes(desk)
        , server(fcp::GRef<SoupServer>::adopt(soup_server_new(nullptr, nullptr))) {}

    ~Listener() { soup_server_disconnect(server.get()); }

    Listener(Listener const&) = delete;
    Listener& operator=(Listener const&) = delete;

    [[nodiscard]] fcp::GErrorPtr listen(std::uint16_t wanted) {
        GError* error = nullptr;
        if (!soup_server_listen_local(server.get(), wanted, SoupServerListenOptions{}, &error))
            return fcp::GErrorPtr{error};
        soup_server_add_early_handler(server.get(), nullptr, refuseStrangers, this, nullptr);
        soup_server_add_handler(server.get(), nullptr, serve, this, nullptr);
        return {};
    }

    [[nodiscard]] std::uint16_t port() const {
        auto* const uris = soup_server_get_uris(server.get());
        auto const number = g_uri_get_port(static_cast<GUri*>(uris->data));
        g_slist_free_full(uris, [](gpointer uri) { g_uri_unref(static_cast<GUri*>(uri)); });
        return static_cast<std::uint16_t>(number);
    }

private:
    // Runs before the body is read.
    static void refuseStrangers(SoupServer*, SoupServerMessage* message, char const* path, GHashTable*,
                                gpointer self) {
        // The list form joins repeated headers, which then match nothing.
        auto const* const host =
            soup_message_headers_get_list(soup_server_message_get_request_headers(message), "Host");
        auto const verdict = static_cast<Listener*>(self)->verdictOn(message, path, host ? host : "");
        std::string_view const method = soup_server_message_get_method(message);
        // Elsewhere a body means nothing; it is read and dropped, so that nobody makes us store one.
        if (verdict != SOUP_STATUS_OK || method != "POST")
            soup_message_body_set_accumulate(soup_server_message_get_request_body(message), FALSE);
        if (verdict == SOUP_STATUS_OK)
            return;
        addHeaders(message);
        if (verdict == SOUP_STATUS_METHOD_NOT_ALLOWED)
            soup_message_headers_replace(soup_server_message_get_response_headers(message), "Allow",
                                         "GET, HEAD");
        soup_server_message_set_status(message, verdict, reasonFor(verdict));
    }

    [[nodiscard]] SoupStatus verdictOn(SoupServerMessage* message, std::string_view path,
                                       std::string_view host) const {
        if (!isOwnHost(host, port()))
            return SOUP_STATUS_MISDIRECTED_REQUEST;
        std::string_view const method = soup_server_message_get_method(message);
        if (method == "POST")
            return routes.verdictOnPost(message, path, host);
        return method == "GET" || method == "HEAD" ? SOUP_STATUS_OK : SOUP_STATUS_METHOD_NOT_ALLOWED;
    }

    static void serve(SoupServer*, SoupServerMessage* message, char const* path, GHashTable*, gpointer self) {
        addHeaders(message);
        auto const& routes = static_cast<Listener*>(self)->routes;
        if (!routes.answer(message, path))
            serveFile(message, path, routes.task());
    }

    SessionRoutes routes;
    fcp::GRef<SoupServer> server;
};

bool PageServer::servesWholePage() {
    return SERVES_WHOLE_PAGE;
}

PageServer::PageServer(std::uint16_t port, SessionDesk atDesk)
    : wantedPort(port)
    , desk(atDesk) {}

PageServer::~PageServer() = default;

std::optional<std::string> PageServer::start() {
    if (isServing())
        return std::nullopt;
    auto fresh = std::make_unique<Listener>(desk);
    if (auto const error = fresh->listen(wantedPort))
        return problemText(wantedPort, *error);
    wantedPort = fresh->port();
    listener = std::move(fresh);
    return std::nullopt;
}

void PageServer::stop() {
    listener.reset();
}

std::string PageServer::pageURL() const {
    return "http://localhost:" + std::to_string(wantedPort) + PagePath;
}

} // namespace workbench
