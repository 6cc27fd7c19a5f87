#include "benches/Harness/RoundServer.h"

#include <array>
#include <stdexcept>
#include <string_view>
#include <utility>

extern "C" {
#include "benches/PageResources.h" // made at build time, a C header
}

namespace fcp::bench {

namespace {

constexpr std::int64_t patience = 120; // seconds, longer than a page's own
constexpr std::string_view roundsFolder = "/rounds/";
constexpr std::string_view pageFolder = "/page/";

void answer(SoupServerMessage* message, char const* contentType, std::string_view body) {
    auto* const headers = soup_server_message_get_response_headers(message);
    // A page that is cut off from others gets the fine clock.
    soup_message_headers_replace(headers, "Cross-Origin-Opener-Policy", "same-origin");
    soup_message_headers_replace(headers, "Cross-Origin-Embedder-Policy", "require-corp");
    soup_message_headers_replace(headers, "Cache-Control", "no-store");
    soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
    soup_server_message_set_response(message, contentType, SOUP_MEMORY_COPY, body.data(), body.size());
}

void answerWithFile(SoupServerMessage* message, char const* contentType, char const* name) {
    auto const path = std::string("/bench/") + name;
    auto const bytes = GRef<GBytes>::adopt(g_resource_lookup_data(bench_page_get_resource(), path.c_str(),
                                                                  G_RESOURCE_LOOKUP_FLAGS_NONE, nullptr));
    gsize size = 0;
    auto const* const data = static_cast<char const*>(g_bytes_get_data(bytes.get(), &size));
    answer(message, contentType, {data, size});
}

std::string originOf(SoupServer* server) {
    auto* const uris = soup_server_get_uris(server);
    auto const port = g_uri_get_port(static_cast<GUri*>(uris->data));
    g_slist_free_full(uris, [](gpointer uri) { g_uri_unref(static_cast<GUri*>(uri)); });
    return "http://localhost:" + std::to_string(port);
}

} // namespace

RoundServer::RoundServer()
    : server(GRef<SoupServer>::adopt(soup_server_new(nullptr, nullptr))) {
    GError* error = nullptr;
    if (!soup_server_listen_local(server.get(), 0, SoupServerListenOptions{}, &error)) {
        GErrorPtr const owned(error);
        throw std::runtime_error(std::string("no port to serve the page from: ") + error->message);
    }
    soup_server_add_handler(server.get(), nullptr, serve, this, nullptr);
    origin = originOf(server.get());
}

RoundServer::~RoundServer() {
    soup_server_disconnect(server.get());
}

void RoundServer::serve(SoupServer*, SoupServerMessage* message, char const* path, GHashTable*,
                        gpointer self) {
    std::string_view const wanted = path;
    if (wanted.starts_with(roundsFolder))
        return static_cast<RoundServer*>(self)->receive(std::string(wanted.substr(roundsFolder.size())),
                                                        message);
    if (wanted.starts_with(pageFolder))
        return answerWithFile(message, "text/html; charset=utf-8", "bench.html");
    if (wanted == "/bench.js")
        return answerWithFile(message, "text/javascript; charset=utf-8", "bench.js");
    if (wanted == "/startup")
        return answerWithFile(message, "text/html; charset=utf-8", "startup.html");
    soup_server_message_set_status(message, SOUP_STATUS_NOT_FOUND, nullptr);
}

void RoundServer::receive(std::string const& name, SoupServerMessage* message) {
    auto const* const body = soup_server_message_get_request_body(message);
    auto& page = pages[name];
    page.result = Json::parse(body->data, body->data + body->length, nullptr, false);
    page.question = GRef<SoupServerMessage>::retain(message);
    soup_server_message_pause(message);
}

Json RoundServer::run(std::string const& name, Json const& round, std::function<bool()> const& mayHope) {
    auto& page = pages[name];
    waitFor([&page] { return static_cast<bool>(page.question); }, mayHope, name + " did not load its page");
    auto const question = std::exchange(page.question, {});
    page.result = nullptr;
    answer(question.get(), "application/json", round.dump());
    soup_server_message_unpause(question.get());
    waitFor([&page] { return !page.result.is_null(); }, mayHope, name + " gave no result");
    if (!page.result.is_object() || page.result.contains("error"))
        throw std::runtime_error(name + ": " + page.result.dump());
    return page.result;
}

void RoundServer::waitFor(std::function<bool()> const& condition, std::function<bool()> const& mayHope,
                          std::string const& what) {
    auto const tick = GRef<GSource>::adopt(g_timeout_source_new_seconds(1));
    g_source_set_callback(
        tick.get(), [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr, nullptr);
    g_source_attach(tick.get(), nullptr);
    auto const end = g_get_monotonic_time() + patience * G_TIME_SPAN_SECOND;
    while (!condition() && mayHope() && g_get_monotonic_time() < end)
        g_main_context_iteration(nullptr, TRUE);
    g_source_destroy(tick.get());
    if (!condition())
        throw std::runtime_error(what);
}

} // namespace fcp::bench
