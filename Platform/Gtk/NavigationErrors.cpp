#include "Platform/Gtk/NavigationErrors.h"

#include <gio/gio.h>

#include <algorithm>
#include <optional>
#include <string_view>

namespace fcp {

namespace {

constexpr char const* urlErrorDomain = "NSURLErrorDomain";
constexpr char const* webKitErrorDomain = "WebKitErrorDomain";

constexpr std::int64_t unknown = -1;
constexpr std::int64_t cancelled = -999;
constexpr std::int64_t timedOut = -1001;
constexpr std::int64_t unsupportedURL = -1002;
constexpr std::int64_t cannotFindHost = -1003;
constexpr std::int64_t cannotConnectToHost = -1004;
constexpr std::int64_t networkConnectionLost = -1005;
constexpr std::int64_t tooManyRedirects = -1007;
constexpr std::int64_t notConnectedToInternet = -1009;
constexpr std::int64_t redirectToNonExistentLocation = -1010;
constexpr std::int64_t cannotParseResponse = -1017;
constexpr std::int64_t fileDoesNotExist = -1100;
constexpr std::int64_t secureConnectionFailed = -1200;
constexpr std::int64_t serverCertificateUntrusted = -1202;

constexpr std::int64_t interruptedByPolicyChange = 102;
constexpr std::int64_t restrictedPort = 103;

struct Rule {
    std::string_view engineDomain;
    std::optional<int> engineCode; // none: every other code of that domain
    char const* domain;
    std::int64_t code;
};

// The first match counts. The engine's domains are compared as text, because an engine that runs in another
// process registers its quarks late or not at all.
constexpr Rule rules[] = {
    {"g-io-error-quark", G_IO_ERROR_CONNECTION_REFUSED, urlErrorDomain, cannotConnectToHost},
    {"g-io-error-quark", G_IO_ERROR_HOST_UNREACHABLE, urlErrorDomain, cannotConnectToHost},
    {"g-io-error-quark", G_IO_ERROR_NETWORK_UNREACHABLE, urlErrorDomain, notConnectedToInternet},
    {"g-io-error-quark", G_IO_ERROR_HOST_NOT_FOUND, urlErrorDomain, cannotFindHost},
    {"g-io-error-quark", G_IO_ERROR_PARTIAL_INPUT, urlErrorDomain, networkConnectionLost},
    {"g-io-error-quark", G_IO_ERROR_CONNECTION_CLOSED, urlErrorDomain, networkConnectionLost},
    {"g-io-error-quark", G_IO_ERROR_TIMED_OUT, urlErrorDomain, timedOut},
    {"g-io-error-quark", G_IO_ERROR_NOT_FOUND, urlErrorDomain, fileDoesNotExist},
    {"g-resolver-error-quark", std::nullopt, urlErrorDomain, cannotFindHost},
    {"g-tls-error-quark", G_TLS_ERROR_BAD_CERTIFICATE, urlErrorDomain, serverCertificateUntrusted},
    {"g-tls-error-quark", std::nullopt, urlErrorDomain, secureConnectionFailed},
    {"soup-session-error-quark", 0, urlErrorDomain, cannotParseResponse},
    {"soup-session-error-quark", 1, urlErrorDomain, cannotParseResponse},
    {"soup-session-error-quark", 2, urlErrorDomain, tooManyRedirects},
    {"soup-session-error-quark", 4, urlErrorDomain, redirectToNonExistentLocation},
    {"soup-session-error-quark", 5, urlErrorDomain, redirectToNonExistentLocation},
    {"WebKitNetworkError", 302, urlErrorDomain, cancelled},
    {"WebKitPolicyError", 100, webKitErrorDomain, 100},
    {"WebKitPolicyError", 101, urlErrorDomain, unsupportedURL},
    {"WebKitPolicyError", 102, webKitErrorDomain, interruptedByPolicyChange},
    {"WebKitPolicyError", 103, webKitErrorDomain, restrictedPort},
    {"WebKitErrorDomain", 300, urlErrorDomain, networkConnectionLost}, // the network process is gone
};

bool isOffline(LoadFailure const& failure, NetworkAvailability network) {
    // The monitor's word counts for names alone: with nothing but loopback up it says "unavailable", while a
    // server on localhost can still refuse.
    return failure.domain == "g-resolver-error-quark" && network == NetworkAvailability::Unavailable;
}

bool isRedirectLoop(LoadFailure const& failure) {
    // The engine's own redirect limit has neither domain nor code; its untranslated text tells it apart.
    return failure.domain.empty() && failure.message.find("redirect") != std::string::npos;
}

} // namespace

NavigationError navigationError(LoadFailure const& failure, NetworkAvailability network) {
    if (isOffline(failure, network))
        return {urlErrorDomain, notConnectedToInternet, failure.message};
    if (isRedirectLoop(failure))
        return {urlErrorDomain, tooManyRedirects, failure.message};
    auto const* rule = std::ranges::find_if(rules, [&](Rule const& candidate) {
        return candidate.engineDomain == failure.domain &&
               candidate.engineCode.value_or(failure.code) == failure.code;
    });
    if (rule == std::ranges::end(rules))
        return {urlErrorDomain, unknown, failure.message};
    return {rule->domain, rule->code, failure.message};
}

NavigationError timedOutError() {
    return {urlErrorDomain, timedOut, "The request timed out."};
}

NavigationError restrictedPortError() {
    return {webKitErrorDomain, restrictedPort, "Not allowed to use restricted network port"};
}

bool isCancellation(NavigationError const& error) {
    return error.domain == urlErrorDomain && error.code == cancelled;
}

bool isPolicyInterruption(NavigationError const& error) {
    return error.domain == webKitErrorDomain && error.code == interruptedByPolicyChange;
}

} // namespace fcp
