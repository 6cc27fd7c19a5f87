#pragma once

#include <string>

namespace workbench {

// Which of the panel's three partners are there.
struct Connections {
    bool host = false; // the panel observes the timeline
    bool page = false; // it has loaded and has called the bridge
    bool container = false; // somebody owns its name on the bus

    friend bool operator==(Connections const&, Connections const&) = default;
};

// One line each, for people: "Host: the panel follows the timeline".
[[nodiscard]] std::string describe(Connections const& connections);

// "host connected, page away, container connected"
[[nodiscard]] std::string summary(Connections const& connections);

} // namespace workbench
