#pragma once

#include "Workbench/ContainerApp/Bus.h"
#include "Workbench/ContainerApp/HostSequence.h"

#include <functional>
#include <optional>
#include <string>

namespace workbench {

// Follows the editor's active sequence: the property ActiveSequence of com.zelvix.fcp.Editor1. The editor may
// come and go at any time, and may never come. Main thread only.
class EditorClient {
public:
    // Told when the sequence may have changed, and when the answer is awaited or known.
    using Observer = std::function<void()>;

    EditorClient(Bus& bus, Observer observer);

    EditorClient(EditorClient const&) = delete;
    EditorClient& operator=(EditorClient const&) = delete;

    // Asks for the present state and for news of it. False when the bus refuses.
    [[nodiscard]] bool follow();

    // False while an editor is there that has not told its sequence yet. Ends after a few seconds in any
    // case.
    [[nodiscard]] bool isSettled() const { return !asking; }

    // None without an editor and without an open sequence.
    [[nodiscard]] std::optional<HostSequence> const& activeSequence() const { return sequence; }

private:
    void ask();
    void answered(sd_bus_message* message, int question);
    void ownerChanged(sd_bus_message* message);
    void propertiesChanged(sd_bus_message* message);
    void settle(std::optional<HostSequence> found);

    Bus& bus;
    Observer observer;
    bool asking = false;
    int questions = 0;
    std::string owner; // the editor's unique name; empty without an editor
    std::optional<HostSequence> sequence;
};

} // namespace workbench
