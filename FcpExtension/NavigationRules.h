#pragma once

#include "Ports/WebView.h"

#include <optional>
#include <string_view>

namespace fcp {

enum class NavigationDecision {
    CancelSilently, // nothing to go to
    Allow, // stays in the panel
    OpenExternally, // handed to the system, cancelled in the panel
};

// Only pages on the service's own two hosts and on "localhost" stay in the panel. Type of navigation, target
// frame, scheme and port are not looked at. Hosts are compared exactly: no sub-domains, no other letter case,
// and no exception for addresses without a host, "about:blank" included.
[[nodiscard]] NavigationDecision decideNavigation(std::optional<Url> const& url);

inline constexpr std::string_view connectionFailedMessage =
    "Failed to connect to Zelvix. Check your internet connection.";

// What the user is told when a load fails before it was committed: the one kind of failure that tells being
// offline from other causes.
[[nodiscard]] std::string_view provisionalFailureMessage(NavigationError const& error);

} // namespace fcp
