#pragma once

#include "Doubles/FakePlatform.h"
#include "FcpExtension/ViewController.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace fcp::test {

using Lines = std::vector<std::string>;

inline constexpr char const* diagMarker = "/tmp/zelvix-fcp-diag";
inline constexpr char const* devMarker = "/tmp/zelvix-fcp-dev";

// A panel over doubles, not yet loaded.
class PanelFixture : public testing::Test {
protected:
    void TearDown() override {
        controller = nullptr;
        platform.mainLoop.advance(Seconds(61)); // a request keeps itself and who asked until its time-out
    }

    // Loads the panel as a platform does and forgets what was noted on the way.
    void loadPanel() {
        controller->loadView();
        controller->viewDidLoad();
        journal.take();
    }

    [[nodiscard]] std::shared_ptr<FakeWebView> webView() const { return platform.webEngine.current(); }

    [[nodiscard]] FakeView& loadingOverlay() const { return platform.userInterface.find("loading overlay"); }

    [[nodiscard]] FakeView& errorOverlay() const { return platform.userInterface.find("error overlay"); }

    [[nodiscard]] FakeView& retryButton() const {
        return platform.userInterface.find("button Retry connection");
    }

    // The detail and status labels, by the text that they were made with.
    [[nodiscard]] FakeView& detailLabel() const {
        return platform.userInterface.find("label Check your connection");
    }

    [[nodiscard]] FakeView& statusLabel() const { return platform.userInterface.find("label Opening your"); }

    [[nodiscard]] Lines logLines() const {
        return journal.only({"info: ", "error: ", "debug: ", "default "});
    }

    void failProvisionally(std::int64_t code, std::string const& domain = "NSURLErrorDomain") {
        controller->didFailProvisionalNavigation(*webView(), {domain, code, "It broke."});
    }

    FakePlatform platform;
    Journal& journal = platform.journal;
    std::shared_ptr<ViewController> controller = ViewController::create(platform.ports);
};

} // namespace fcp::test
