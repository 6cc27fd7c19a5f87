#include "Platform/Gtk/NavigationErrors.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace fcp::test {

namespace {

constexpr auto available = NetworkAvailability::Available;
constexpr auto unavailable = NetworkAvailability::Unavailable;

// The engine's numbers stand here as numbers: they are what a probe of the real engine showed.
struct Row {
    std::string name;
    LoadFailure failure;
    NetworkAvailability network;
    std::string domain;
    std::int64_t code;
};

std::ostream& operator<<(std::ostream& out, Row const& row) {
    return out << row.name;
}

constexpr auto rowName = [](auto const& row) { return row.param.name; };

class NavigationErrorsTable : public testing::TestWithParam<Row> {};

TEST_P(NavigationErrorsTable, NamesTheFailureInTermsOfTheURLLoadingSystem) {
    auto const error = navigationError(GetParam().failure, GetParam().network);
    EXPECT_EQ(error.domain, GetParam().domain);
    EXPECT_EQ(error.code, GetParam().code);
    EXPECT_EQ(error.localizedDescription, GetParam().failure.message);
}

constexpr char const* url = "NSURLErrorDomain";
constexpr char const* webKit = "WebKitErrorDomain";
constexpr char const* io = "g-io-error-quark";
constexpr char const* resolver = "g-resolver-error-quark";
constexpr char const* tls = "g-tls-error-quark";
constexpr char const* soup = "soup-session-error-quark";
constexpr char const* policy = "WebKitPolicyError";

INSTANTIATE_TEST_SUITE_P(
    Network, NavigationErrorsTable,
    testing::Values(Row{"AClosedPort", {io, 39, "refused"}, available, url, -1004},
                    Row{"AClosedPortWithNothingButLoopback", {io, 39, "refused"}, unavailable, url, -1004},
                    Row{"AnUnreachableHost", {io, 37, "no route"}, available, url, -1004},
                    Row{"AnUnreachableNetwork", {io, 38, "unreachable"}, available, url, -1009},
                    Row{"AnUnreachableNetworkOffline", {io, 38, "unreachable"}, unavailable, url, -1009},
                    Row{"AHostNotFound", {io, 28, "no host"}, available, url, -1003},
                    Row{"AnUnknownName", {resolver, 0, "no name"}, available, url, -1003},
                    Row{"AnUnknownNameOffline", {resolver, 0, "no name"}, unavailable, url, -1009},
                    Row{"ATemporaryResolverFailure", {resolver, 1, "again"}, available, url, -1003},
                    Row{"ATemporaryResolverFailureOffline", {resolver, 1, "again"}, unavailable, url, -1009},
                    Row{"ACloseWithoutAByte", {io, 34, "short"}, available, url, -1005},
                    Row{"AReset", {io, 44, "reset"}, available, url, -1005},
                    Row{"AKernelTimeOut", {io, 24, "late"}, available, url, -1001},
                    Row{"AMissingFile", {io, 1, "no file"}, available, url, -1100},
                    Row{"AnyOtherIoError", {io, 0, "failed"}, available, url, -1}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Protocol, NavigationErrorsTable,
    testing::Values(Row{"GarbageInPlaceOfHttp", {soup, 0, "parse"}, available, url, -1017},
                    Row{"AnUnknownEncoding", {soup, 1, "encoding"}, available, url, -1017},
                    Row{"ALibrarysRedirectLimit", {soup, 2, "too many"}, available, url, -1007},
                    Row{"ARedirectWithoutTarget", {soup, 4, "no location"}, available, url, -1010},
                    Row{"ARedirectToNoAddress", {soup, 5, "bad location"}, available, url, -1010},
                    Row{"AnyOtherProtocolError", {soup, 6, "queue"}, available, url, -1},
                    Row{"ASelfSignedCertificate", {tls, 2, "certificate"}, available, url, -1202},
                    Row{"AnyOtherTlsError", {tls, 4, "handshake"}, available, url, -1200}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Engine, NavigationErrorsTable,
    testing::Values(
        Row{"ACancelledLoad", {"WebKitNetworkError", 302, "cancelled"}, available, url, -999},
        Row{"AnyOtherNetworkError", {"WebKitNetworkError", 399, "failed"}, available, url, -1},
        Row{"AMimeTypeItCannotShow", {policy, 100, "mime"}, available, webKit, 100},
        Row{"ASchemeItDoesNotKnow", {policy, 101, "scheme"}, available, url, -1002},
        Row{"AnInterruption", {policy, 102, "interrupted"}, available, webKit, 102},
        Row{"ARestrictedPort", {policy, 103, "port"}, available, webKit, 103},
        Row{"ALostNetworkProcess", {"WebKitErrorDomain", 300, "internal"}, available, url, -1005},
        Row{"ARedirectLoop", {"", 0, "Load cannot follow more than 20 redirections"}, available, url, -1007},
        Row{"AnErrorOfNoDomain", {"", 0, ""}, available, url, -1},
        Row{"AnUnknownDomain", {"some-error-quark", 302, "redirect"}, available, url, -1}),
    rowName);

TEST(NavigationErrors, NamesTheTimeOut) {
    EXPECT_EQ(timedOutError().domain, "NSURLErrorDomain");
    EXPECT_EQ(timedOutError().code, -1001);
    EXPECT_EQ(timedOutError().localizedDescription, "The request timed out.");
}

TEST(NavigationErrors, NamesTheRestrictedPort) {
    EXPECT_EQ(restrictedPortError().domain, "WebKitErrorDomain");
    EXPECT_EQ(restrictedPortError().code, 103);
}

TEST(NavigationErrors, TellsCancellationsAndInterruptionsByDomainAndCode) {
    EXPECT_TRUE(isCancellation({"NSURLErrorDomain", -999, ""}));
    EXPECT_FALSE(isCancellation({"WebKitErrorDomain", -999, ""}));
    EXPECT_FALSE(isCancellation({"NSURLErrorDomain", -1001, ""}));
    EXPECT_TRUE(isPolicyInterruption({"WebKitErrorDomain", 102, ""}));
    EXPECT_FALSE(isPolicyInterruption({"NSURLErrorDomain", 102, ""}));
    EXPECT_FALSE(isPolicyInterruption({"WebKitErrorDomain", 103, ""}));
}

} // namespace

} // namespace fcp::test
