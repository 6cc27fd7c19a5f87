#pragma once

#include "Workbench/ContainerApp/BusClient.h"
#include "Workbench/ContainerApp/ContainerProcess.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

// The real program with its window, and a person in front of it.
class FolderDialogFixture : public testing::Test {
protected:
    FolderDialogFixture() {
        // The file dialog keeps its settings; without this it looks for a service that the tests' bus does
        // not have.
        ::setenv("GSETTINGS_BACKEND", "memory", 1);
        container.emplace(std::vector<std::string>{"--database", folder / "store.sqlite"});
        EXPECT_TRUE(container->isReady()) << container->complaints();
    }

    static std::string dialog() {
        return outputOf("xdotool search --onlyvisible --name '^Choose the folder for exports$' 2>/dev/null");
    }

    [[nodiscard]] static bool isOpen() {
        return waitUntil([] { return !dialog().empty(); });
    }

    [[nodiscard]] static bool isClosed() {
        return waitUntil([] { return dialog().empty(); });
    }

    // Its buttons stand at the lower right.
    static void press(int fromRight) {
        auto const script = "eval $(xdotool getwindowgeometry --shell " +
                            dialog().substr(0, dialog().find('\n')) +
                            "); xdotool mousemove $X $Y mousemove $((X + WIDTH - " +
                            std::to_string(fromRight) + ")) $((Y + HEIGHT - 24)) click 1";
        std::ignore = outputOf(script);
    }

    [[nodiscard]] bool isAnswered(std::string const& requestId) {
        return client.waitFor([&] { return !client.answers(requestId).empty(); });
    }

    // A window that has just come up does not take every click; a person clicks again.
    [[nodiscard]] bool isAnsweredBy(int button, std::string const& requestId) {
        auto nextClick = std::chrono::steady_clock::time_point{};
        return client.waitFor([&] {
            auto const now = std::chrono::steady_clock::now();
            if (client.answers(requestId).empty() && now >= nextClick) {
                press(button);
                nextClick = now + std::chrono::seconds{2};
            }
            return !client.answers(requestId).empty();
        });
    }

    static constexpr auto choose = 50;
    static constexpr auto cancel = 130;

    TemporaryFolder folder;
    BusClient client;
    std::optional<ContainerProcess> container;
    std::string const documents = std::string{std::getenv("HOME")} + "/Documents";
};

} // namespace workbench
