#pragma once

#include "Workbench/ContainerApp/Bus.h"
#include "Workbench/ContainerApp/CommandServer.h"
#include "Workbench/ContainerApp/EditorClient.h"
#include "Workbench/ContainerApp/ImportService.h"
#include "Workbench/ContainerApp/MarkersService.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace workbench {

// Everything that this program is on one connection to the session bus. Main thread only.
class BusPresence {
public:
    struct Callbacks {
        CommandServer::Handler command;
        CommandServer::Observer answered;
        std::function<void(std::optional<HostSequence> const&)> activeSequence;
        ImportService::Import import;
        std::function<void()> lost; // may destroy the presence
    };

    enum class Outcome { Connected, AlreadyRunning, NoBus };

    explicit BusPresence(Callbacks callbacks);

    BusPresence(BusPresence const&) = delete;
    BusPresence& operator=(BusPresence const&) = delete;

    // Takes the program's name on the bus. Commands that come from here on wait until it is served. `problem`
    // says why there is no bus.
    [[nodiscard]] Outcome connect(std::string& problem);

    // Starts to answer. False when the bus refuses.
    [[nodiscard]] bool serve(CommentStore& comments, SequenceStore& sequences);

    // Answers what has arrived.
    void drain();

    void markersChanged(std::string const& sequenceKey, std::uint64_t revision);

private:
    void editorChanged();
    [[nodiscard]] std::string import(std::string const& file, std::string const& sequenceKey);

    Callbacks callbacks;
    std::unique_ptr<Bus> bus;
    std::unique_ptr<CommandServer> commands;
    std::unique_ptr<EditorClient> editor;
    std::unique_ptr<MarkersService> markers;
    std::unique_ptr<ImportService> imports;
};

} // namespace workbench
