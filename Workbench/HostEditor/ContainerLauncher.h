#pragma once

#include "Workbench/HostEditor/SessionBus.h"

#include <glibmm/spawn.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace workbench {

class Journal;

// Sees to it that somebody owns the container's bus name: starts the container application as a child when
// nobody does, starts another when that one dies, and ends the child that it started, never anybody else's.
// Without a bus it waits for one. Main thread.
class ContainerLauncher final : public sigc::trackable {
public:
    // Bus and journal outlive the launcher.
    ContainerLauncher(SessionBus& sessionBus, Journal const& toTell, std::filesystem::path file);
    ~ContainerLauncher();
    ContainerLauncher(ContainerLauncher const&) = delete;
    ContainerLauncher& operator=(ContainerLauncher const&) = delete;

    // The child that runs; none when the name's owner is not ours.
    [[nodiscard]] std::optional<Glib::Pid> child() const { return process; }

private:
    void watchName();
    void unwatchName();
    void nameAppeared(std::string const& owner);
    void nameVanished();
    void startSoon();
    void start();
    void childEnded(Glib::Pid pid, int status);
    void stopChild();

    SessionBus& bus;
    Journal const& journal;
    std::filesystem::path program;
    unsigned watch = 0; // of the name; 0: none
    bool isOwned = false;
    std::optional<Glib::Pid> process;
    std::int64_t startedAt = 0; // monotonic, in microseconds
    unsigned pause; // milliseconds before the next start
    bool showsWindow = true; // until the user has closed it; commands are answered without
    sigc::connection ending;
    sigc::connection starting;
};

} // namespace workbench
