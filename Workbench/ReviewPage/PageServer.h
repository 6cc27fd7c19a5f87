#pragma once

#include "Workbench/ReviewPage/SessionDesk.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace workbench {

// Serves the review page to this machine alone, on 127.0.0.1 and ::1. The files are part of the program.
//
//     PageServer page;
//     if (auto problem = page.start())
//         showInWindow(*problem); // and do not load the panel: whoever answers on the port is a stranger
//
// Main thread only; answers are sent from the default main context. Destroying it stops it. From outside,
// PageServerControl stops and starts it over the session bus.
class PageServer final {
public:
    static constexpr std::uint16_t PanelPort = 3000; // the one that the panel's development mode loads from

    // False in a build without npm: its small page neither records nor plays back.
    [[nodiscard]] static bool servesWholePage();

    // `port` 0 takes any free one at the first start and keeps it.
    // What the desk points to outlives the server; without it nothing is recorded or played back.
    explicit PageServer(std::uint16_t port = PanelPort, SessionDesk atDesk = {});
    ~PageServer();
    PageServer(PageServer const&) = delete;
    PageServer& operator=(PageServer const&) = delete;

    // Begins to listen. None when the page is served, also when it was already; otherwise one clear line for
    // the user, which names the way out when the port is taken.
    [[nodiscard]] std::optional<std::string> start();

    // Stops listening and closes every connection, also those in the middle of an answer.
    void stop();

    [[nodiscard]] bool isServing() const { return listener != nullptr; }

    [[nodiscard]] std::uint16_t port() const { return wantedPort; }

    [[nodiscard]] std::string pageURL() const;

private:
    class Listener;

    std::uint16_t wantedPort;
    SessionDesk desk;
    std::unique_ptr<Listener> listener; // empty while not serving
};

} // namespace workbench
