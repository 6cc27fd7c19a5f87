#include "Platform/Gtk/GraphicsProcessor.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace fcp::test {

namespace {

namespace fs = std::filesystem;

class GraphicsProcessorTest : public testing::Test {
protected:
    void SetUp() override {
        auto pattern = (fs::temp_directory_path() / "zelvix-devices.XXXXXX").string();
        devices = mkdtemp(pattern.data());
    }

    void TearDown() override { fs::remove_all(devices); }

    void add(std::string const& name) const { std::ofstream(devices / name).flush(); }

    fs::path devices;
};

} // namespace

TEST_F(GraphicsProcessorTest, ADeviceToRenderOnShowsOne) {
    add("card0");
    add("renderD128");
    EXPECT_TRUE(hasGraphicsProcessor(devices));
}

TEST_F(GraphicsProcessorTest, ADisplayAloneIsNone) {
    add("card0");
    EXPECT_FALSE(hasGraphicsProcessor(devices));
}

TEST_F(GraphicsProcessorTest, NoDevicesAreNone) {
    EXPECT_FALSE(hasGraphicsProcessor(devices));
    EXPECT_FALSE(hasGraphicsProcessor(devices / "missing"));
}

TEST_F(GraphicsProcessorTest, TheUsersChoiceOfARendererStays) {
    setenv("GSK_RENDERER", "chosen", 1);
    preferPlainDrawingWithoutGraphicsProcessor();
    EXPECT_STREQ(std::getenv("GSK_RENDERER"), "chosen");
    unsetenv("GSK_RENDERER");
    preferPlainDrawingWithoutGraphicsProcessor();
    EXPECT_EQ(std::getenv("GSK_RENDERER") == nullptr, hasGraphicsProcessor());
}

} // namespace fcp::test
