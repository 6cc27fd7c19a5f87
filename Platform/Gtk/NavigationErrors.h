#pragma once

#include "Ports/WebView.h"

#include <string>

namespace fcp {

// A load error in the engine's own terms: which library it came from, its code there, its text.
struct LoadFailure {
    std::string domain; // the library's error domain as text; empty when it names none
    int code = 0;
    std::string message;
};

// Whether the machine reaches more than itself.
enum class NetworkAvailability { Unavailable, Available };

// The same failure in the terms of the URL-loading system, keeping its text. Pure; any thread.
[[nodiscard]] NavigationError navigationError(LoadFailure const& failure, NetworkAvailability network);

// The main resource did not arrive in time.
[[nodiscard]] NavigationError timedOutError();

// The port is one that the engine refuses to talk to.
[[nodiscard]] NavigationError restrictedPortError();

[[nodiscard]] bool isCancellation(NavigationError const& error);

// A policy decision ended the load: ours, or the engine's on content that it cannot show.
[[nodiscard]] bool isPolicyInterruption(NavigationError const& error);

} // namespace fcp
