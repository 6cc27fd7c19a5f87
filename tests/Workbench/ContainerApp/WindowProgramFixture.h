#pragma once

#include "Workbench/ContainerApp/FolderDialogFixture.h"

#include <chrono>
#include <functional>
#include <string>
#include <tuple>

namespace workbench {

// The real program with its window, and the keys of a person.
class WindowProgramFixture : public FolderDialogFixture {
protected:
    WindowProgramFixture() {
        auto const sent = client.request(
            "syncComment",
            {{"comment", {{"id", "a"}, {"seconds", 1}, {"text", "Logo"}, {"sequenceId", "reel"}}}});
        EXPECT_EQ(true, sent);
    }

    static void press(std::string const& keys) {
        std::ignore = outputOf("xdotool windowfocus --sync "
                               "$(xdotool search --onlyvisible --name '^Review comments$' | head -1) && "
                               "xdotool key " +
                               keys);
    }

    static std::string importDialog() {
        auto const found = outputOf("xdotool search --onlyvisible --name '^Import comments$' 2>/dev/null");
        return found.substr(0, found.find('\n'));
    }

    // A window that has just come up does not hear every key.
    [[nodiscard]] static bool happensAfter(std::string const& keys, std::function<bool()> const& condition) {
        auto nextPress = std::chrono::steady_clock::time_point{};
        return waitUntil([&] {
            auto const now = std::chrono::steady_clock::now();
            if (condition())
                return true;
            if (now >= nextPress) {
                press(keys);
                nextPress = now + std::chrono::seconds{3};
            }
            return false;
        });
    }
};

} // namespace workbench
