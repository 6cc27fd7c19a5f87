#pragma once

#include "Workbench/ContainerApp/Bus.h"
#include "Workbench/ContainerApp/Json.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace workbench {

// Somebody on the session bus who sends commands and hears every answer.
class BusClient {
public:
    struct Change {
        std::string sequenceKey;
        std::uint64_t revision = 0;
    };

    BusClient();

    BusClient(BusClient const&) = delete;
    BusClient& operator=(BusClient const&) = delete;

    // Sends a command and returns its identifier.
    std::string send(std::string const& command, Json arguments = Json::object());

    // The same with everything given, the envelope too.
    void sendDictionary(Json const& dictionary);

    // A containerCommand signal with whatever `fill` puts in.
    void sendSignal(std::function<void(sd_bus_message*)> const& fill);

    // Sends a command and returns the result of its one answer, or "no answer".
    [[nodiscard]] Json request(std::string const& command, Json arguments = Json::object());

    // The results that have come for an identifier.
    [[nodiscard]] std::vector<Json> answers(std::string const& requestId) const;
    [[nodiscard]] std::size_t answerCount() const;

    // Waits until the container has dealt with all that was sent to it and its answers have come.
    void settle();

    // Waits until all has come that others had sent before; they may be gone.
    void settleWithBus();

    // Serves the connection until `condition` holds; false when it does not within 20 seconds.
    [[nodiscard]] bool waitFor(std::function<bool()> const& condition);

    // The answer to GetMarkers: {"revision": ..., "markers": [...]}, or {"error": ...}.
    [[nodiscard]] Json markers(std::string const& sequenceKey);

    [[nodiscard]] std::vector<Change> const& changes() const { return heardChanges; }

    [[nodiscard]] Bus& connection() { return *bus; }

private:
    void settleWith(char const* destination, char const* path);

    std::unique_ptr<Bus> bus;
    std::map<std::string, std::vector<Json>> results;
    std::vector<Change> heardChanges;
    int counter = 0;
};

} // namespace workbench
