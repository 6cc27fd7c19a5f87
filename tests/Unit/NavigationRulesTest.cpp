#include "FcpExtension/NavigationRules.h"

#include "FcpExtension/ServiceHosts.h"

#include <gtest/gtest.h>

namespace fcp::test {

namespace {

NavigationDecision decide(std::optional<std::string> host) {
    return decideNavigation(Url{"scheme://whatever/", std::move(host)});
}

TEST(NavigationRules, KeepTheServicesTwoHostsAndLocalhostInThePanel) {
    EXPECT_EQ(decide(std::string(primaryHost)), NavigationDecision::Allow);
    EXPECT_EQ(decide(std::string(apiHost)), NavigationDecision::Allow);
    EXPECT_EQ(decide("localhost"), NavigationDecision::Allow);
}

TEST(NavigationRules, SendEveryOtherHostOutside) {
    std::string const primary(primaryHost);
    for (auto const& host :
         {"www." + primary, primary + ".", primary + ".evil.test", std::string("127.0.0.1"),
          std::string("[::1]"), std::string("LOCALHOST"), std::string("Localhost"), std::string("localhost."),
          std::string(""), std::string("sub.localhost")})
        EXPECT_EQ(decide(host), NavigationDecision::OpenExternally) << host;
    auto upperCase = primary;
    upperCase[0] = 'Z';
    EXPECT_EQ(decide(upperCase), NavigationDecision::OpenExternally);
}

TEST(NavigationRules, SendAddressesWithoutAHostOutsideAboutBlankIncluded) {
    for (auto const* const address : {"about:blank", "data:text/html,x", "mailto:a@b.test"})
        EXPECT_EQ(decideNavigation(Url{address, std::nullopt}), NavigationDecision::OpenExternally)
            << address;
}

TEST(NavigationRules, CancelANavigationWithoutAnAddressSilently) {
    EXPECT_EQ(decideNavigation(std::nullopt), NavigationDecision::CancelSilently);
}

TEST(NavigationRules, CallFourCodesOfTheUrlLoadingSystemOffline) {
    for (std::int64_t const code : {-1009, -1005, -1018, -1020})
        EXPECT_EQ(provisionalFailureMessage({"NSURLErrorDomain", code, ""}),
                  "You appear to be offline. Reconnect to the internet, then retry.")
            << code;
}

TEST(NavigationRules, CallEveryOtherFailureGeneric) {
    std::string const generic = "Failed to connect to Zelvix. Check your internet connection.";
    for (std::int64_t const code : {-1001, -1003, -1004, -999, -1202, 0, 1009})
        EXPECT_EQ(provisionalFailureMessage({"NSURLErrorDomain", code, ""}), generic) << code;
    // The same code of another domain, and a domain that only looks the same.
    for (auto const* const domain : {"WebKitErrorDomain", "nsurlerrordomain", "NSURLErrorDomain ", ""})
        EXPECT_EQ(provisionalFailureMessage({domain, -1009, ""}), generic) << domain;
}

} // namespace

} // namespace fcp::test
