#include "FcpExtension/NavigationRules.h"

#include "FcpExtension/ServiceHosts.h"

#include <algorithm>
#include <array>

namespace fcp {

namespace {

constexpr std::array allowedHosts{primaryHost, apiHost, std::string_view("localhost")};

// Not connected, connection lost, roaming off, data not allowed.
constexpr std::array<std::int64_t, 4> offlineCodes{-1009, -1005, -1018, -1020};

template <typename Values, typename Value>
bool contains(Values const& values, Value const& value) {
    return std::find(values.begin(), values.end(), value) != values.end();
}

} // namespace

NavigationDecision decideNavigation(std::optional<Url> const& url) {
    if (!url)
        return NavigationDecision::CancelSilently;
    return url->host && contains(allowedHosts, *url->host) ? NavigationDecision::Allow
                                                           : NavigationDecision::OpenExternally;
}

std::string_view provisionalFailureMessage(NavigationError const& error) {
    return error.domain == "NSURLErrorDomain" && contains(offlineCodes, error.code)
               ? "You appear to be offline. Reconnect to the internet, then retry."
               : connectionFailedMessage;
}

} // namespace fcp
