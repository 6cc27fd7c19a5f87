#include "PanelFixture.h"

#include "FcpExtension/ServiceHosts.h"

namespace fcp::test {

namespace {

class ViewControllerNavigation : public PanelFixture {
protected:
    ViewControllerNavigation() { loadPanel(); }

    // Asks the policy; fails unless it decides exactly once, before it returns.
    [[nodiscard]] NavigationActionPolicy decide(std::optional<Url> url) {
        std::vector<NavigationActionPolicy> decisions;
        controller->decidePolicyFor(*webView(), {std::move(url)}, [&](NavigationActionPolicy policy) {
            journal.note(policy == NavigationActionPolicy::Allow ? "allow" : "cancel");
            decisions.push_back(policy);
        });
        EXPECT_EQ(decisions.size(), 1U);
        return decisions.at(0);
    }

    [[nodiscard]] NavigationActionPolicy decide(std::string const& address) {
        return decide(platform.urlParser.parse(address));
    }
};

std::string const genericMessage =
    "error: showError: Failed to connect to Zelvix. Check your internet connection.";
std::string const offlineMessage =
    "error: showError: You appear to be offline. Reconnect to the internet, then retry.";

TEST_F(ViewControllerNavigation, LogsTheAddressOfAFinishedNavigation) {
    webView()->currentUrl = Url{"http://localhost:3000/x", "localhost"};
    controller->didFinish(*webView());
    EXPECT_EQ(logLines(), (Lines{"info: didFinish: http://localhost:3000/x",
                                 "info: hideLoadingOverlay — revealing WebView"}));
}

TEST_F(ViewControllerNavigation, LogsNilForAFinishedNavigationWithoutAnAddress) {
    controller->didFinish(*webView());
    EXPECT_EQ(logLines().at(0), "info: didFinish: nil");
}

TEST_F(ViewControllerNavigation, ShowsTheOfflineMessageForOfflineProvisionalFailures) {
    for (std::int64_t const code : {-1009, -1005, -1018, -1020}) {
        failProvisionally(code);
        EXPECT_EQ(logLines(), (Lines{"error: didFailProvisional: [NSURLErrorDomain:" + std::to_string(code) +
                                         "] It broke.",
                                     offlineMessage}));
        journal.take();
    }
    EXPECT_EQ(detailLabel().text, "You appear to be offline. Reconnect to the internet, then retry.");
}

TEST_F(ViewControllerNavigation, ShowsTheGenericMessageForOtherProvisionalFailures) {
    for (std::int64_t const code : {-1001, -1003}) {
        failProvisionally(code);
        EXPECT_EQ(logLines().at(1), genericMessage);
        journal.take();
    }
}

TEST_F(ViewControllerNavigation, ShowsTheGenericMessageForAnOfflineCodeOfAnotherDomain) {
    failProvisionally(-1009, "WebKitErrorDomain");
    EXPECT_EQ(logLines(),
              (Lines{"error: didFailProvisional: [WebKitErrorDomain:-1009] It broke.", genericMessage}));
}

TEST_F(ViewControllerNavigation, ShowsTheGenericMessageForEveryCommittedFailureOfflineCodesIncluded) {
    controller->didFail(*webView(), {"NSURLErrorDomain", -1009, "Offline."});
    EXPECT_EQ(logLines(), (Lines{"error: didFail: Offline.", genericMessage}));
}

TEST_F(ViewControllerNavigation, AllowsTheServicesHostsAndLocalhostOnAnyPortAndScheme) {
    std::string const primary(primaryHost);
    std::string const api(apiHost);
    for (auto const& address :
         {"https://" + primary + "/fcp-panel/login", "http://" + primary + "/", "https://" + api + "/v1",
          std::string("http://localhost:3000/fcp-panel/login"), std::string("https://localhost/"),
          std::string("ws://localhost:1/")})
        EXPECT_EQ(decide(address), NavigationActionPolicy::Allow) << address;
    EXPECT_TRUE(platform.workspace.opened.empty());
}

TEST_F(ViewControllerNavigation, LogsAnAllowedNavigationAtDebugLevelOnly) {
    static_cast<void>(decide("http://localhost:3000/"));
    EXPECT_EQ(journal.lines(), (Lines{"debug: navigate policy: http://localhost:3000/", "allow"}));
}

TEST_F(ViewControllerNavigation, LogsAForeignLinkThenOpensItThenCancels) {
    EXPECT_EQ(decide("http://127.0.0.1:3000/x"), NavigationActionPolicy::Cancel);
    EXPECT_EQ(journal.lines(), (Lines{"debug: navigate policy: http://127.0.0.1:3000/x",
                                      "info: Opening external URL: http://127.0.0.1:3000/x",
                                      "open http://127.0.0.1:3000/x", "cancel"}));
}

TEST_F(ViewControllerNavigation, OpensSubDomainsAndOtherLetterCaseExternally) {
    std::string const primary(primaryHost);
    for (auto const& address : {"https://www." + primary + "/", std::string("http://LOCALHOST:3000/")})
        EXPECT_EQ(decide(address), NavigationActionPolicy::Cancel) << address;
    EXPECT_EQ(platform.workspace.opened.size(), 2U);
}

TEST_F(ViewControllerNavigation, OpensAddressesWithoutAHostExternallyInDiagnosticModeToo) {
    platform.fileManager.files = {diagMarker};
    EXPECT_EQ(decide("about:blank"), NavigationActionPolicy::Cancel);
    EXPECT_EQ(platform.workspace.opened, Lines{"about:blank"});
}

TEST_F(ViewControllerNavigation, NeverAsksTheContainerToOpenALink) {
    static_cast<void>(decide("https://elsewhere.test/"));
    EXPECT_TRUE(platform.notificationCenter.posted.empty());
}

TEST_F(ViewControllerNavigation, CancelsAnActionWithoutAnAddressWithoutALine) {
    EXPECT_EQ(decide(std::nullopt), NavigationActionPolicy::Cancel);
    EXPECT_EQ(journal.lines(), Lines{"cancel"});
}

TEST_F(ViewControllerNavigation, ChangesNoOverlayByDeciding) {
    static_cast<void>(decide("https://elsewhere.test/"));
    static_cast<void>(decide("http://localhost/"));
    EXPECT_TRUE(loadingOverlay().visible);
    EXPECT_FALSE(errorOverlay().visible);
    EXPECT_EQ(platform.mainLoop.pending(), 2U);
}

} // namespace

} // namespace fcp::test
