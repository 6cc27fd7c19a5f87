#include "Platform/Gtk/GioWorkspace.h"
#include "Contract/TurnUntil.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace fcp::test {

namespace {

namespace fs = std::filesystem;

// A desktop whose handler for https writes down what it is given.
class GioWorkspaceTest : public testing::Test {
protected:
    fs::path const opened = fs::path(g_get_home_dir()) / "opened";
    GioWorkspace workspace;

    void SetUp() override {
        fs::path const data = g_get_user_data_dir();
        fs::path const recorder = data / "recorder";
        write(recorder, "#!/bin/sh\nprintf '%s\\n' \"$1\" >>" + opened.string() + "\n");
        fs::permissions(recorder, fs::perms::owner_all);
        write(data / "applications/recorder.desktop",
              "[Desktop Entry]\nType=Application\nName=Recorder\nExec=" + recorder.string() +
                  " %u\nMimeType=x-scheme-handler/https;\n");
        write(fs::path(g_get_user_config_dir()) / "mimeapps.list",
              "[Default Applications]\nx-scheme-handler/https=recorder.desktop\n");
    }

    static void write(fs::path const& path, std::string const& text) {
        fs::create_directories(path.parent_path());
        std::ofstream(path) << text;
    }

    [[nodiscard]] std::string recorded() const {
        std::ifstream file(opened);
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

} // namespace

TEST_F(GioWorkspaceTest, HandsAddressesToTheDesktopsHandlerAndWhatHasNoneToNobody) {
    workspace.open({"no-such-scheme:anything", std::nullopt});
    workspace.open({"", std::nullopt});
    workspace.open({"https://elsewhere.example/a?b=%zz&c='d'#e", "elsewhere.example"});
    EXPECT_EQ(recorded(), ""); // nothing runs inside the call
    EXPECT_TRUE(turnUntil([&] { return recorded() == "https://elsewhere.example/a?b=%zz&c='d'#e\n"; }))
        << recorded();
}

} // namespace fcp::test
