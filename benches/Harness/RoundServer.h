#pragma once

#include "Platform/Gtk/GRef.h"
#include "Ports/Json.h"

#include <functional>
#include <libsoup/soup.h>
#include <map>
#include <string>

namespace fcp::bench {

// Serves the measured pages on a free port of this machine and hands them their rounds: a page asks for the
// next one with the result of the last. A page is known by the last part of its address. Both sides of a
// comparison load the same page from here. Throws std::runtime_error.
class RoundServer {
public:
    RoundServer();
    ~RoundServer();

    RoundServer(RoundServer const&) = delete;
    RoundServer& operator=(RoundServer const&) = delete;

    [[nodiscard]] std::string pageURL(std::string const& name) const { return origin + "/page/" + name; }

    // A page that does nothing at all.
    [[nodiscard]] std::string startupURL() const { return origin + "/startup"; }

    // Has the page of this name do one round, and waits for its result as long as `mayHope` says so.
    [[nodiscard]] Json run(std::string const& name, Json const& round, std::function<bool()> const& mayHope);

private:
    struct Page {
        GRef<SoupServerMessage> question; // asked and not answered yet
        Json result; // of the round before; null until it is known
    };

    static void serve(SoupServer* server, SoupServerMessage* message, char const* path, GHashTable* query,
                      gpointer self);
    void receive(std::string const& name, SoupServerMessage* message);
    void waitFor(std::function<bool()> const& condition, std::function<bool()> const& mayHope,
                 std::string const& what);

    GRef<SoupServer> const server;
    std::string origin;
    std::map<std::string, Page> pages;
};

} // namespace fcp::bench
