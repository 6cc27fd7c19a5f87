#include "Platform/Gtk/GLibLogSystem.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace fcp::test {

namespace {

struct Line {
    GLogLevelFlags level;
    std::map<std::string, std::string> fields;

    [[nodiscard]] std::string field(std::string const& name) const {
        auto const found = fields.find(name);
        return found == fields.end() ? "(none)" : found->second;
    }
};

std::vector<Line> lines;
bool forwarding = false;

GLogWriterOutput write(GLogLevelFlags level, GLogField const* fields, gsize count, gpointer) {
    if (forwarding)
        return g_log_writer_default(level, fields, count, nullptr);
    Line line{level, {}};
    for (gsize i = 0; i < count; ++i)
        line.fields.emplace(fields[i].key, static_cast<char const*>(fields[i].value));
    lines.push_back(line);
    return G_LOG_WRITER_HANDLED;
}

class GLibLogTest : public testing::Test {
protected:
    static void SetUpTestSuite() { g_log_set_writer_func(write, nullptr, nullptr); } // once in a process

    void SetUp() override { lines.clear(); }

    [[nodiscard]] static bool isShown(Line const& line) {
        auto const domain = line.fields.find("GLIB_DOMAIN");
        return !g_log_writer_default_would_drop(
            line.level, domain == line.fields.end() ? nullptr : domain->second.c_str());
    }

    GLibLogSystem system;
    std::shared_ptr<Log> const log = system.makeLog("ai.zelvix.fcp.extension", "ViewController");
};

} // namespace

TEST_F(GLibLogTest, ALineCarriesItsSubsystemAsDomainAndItsCategory) {
    log->info("loadView starting, panelURL: about:blank");
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].field("GLIB_DOMAIN"), "ai.zelvix.fcp.extension");
    EXPECT_EQ(lines[0].field("CATEGORY"), "ViewController");
    EXPECT_EQ(lines[0].field("MESSAGE"), "loadView starting, panelURL: about:blank");
}

TEST_F(GLibLogTest, EachLevelHasTheJournalsPriority) {
    log->debug("d");
    log->info("i");
    log->error("e");
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].level, G_LOG_LEVEL_DEBUG);
    EXPECT_EQ(lines[0].field("PRIORITY"), "7");
    EXPECT_EQ(lines[1].level, G_LOG_LEVEL_INFO);
    EXPECT_EQ(lines[1].field("PRIORITY"), "6");
    EXPECT_EQ(lines[2].level, G_LOG_LEVEL_MESSAGE);
    EXPECT_EQ(lines[2].field("PRIORITY"), "3");
}

TEST_F(GLibLogTest, DebugAndInfoLinesShowWhenTheSubsystemIsAskedFor) {
    log->debug("d");
    log->info("i");
    log->error("e");
    ASSERT_EQ(lines.size(), 3U);
    g_unsetenv("G_MESSAGES_DEBUG");
    EXPECT_FALSE(isShown(lines[0]));
    EXPECT_FALSE(isShown(lines[1]));
    EXPECT_TRUE(isShown(lines[2]));
    g_setenv("G_MESSAGES_DEBUG", "ai.zelvix.fcp.extension", TRUE);
    EXPECT_TRUE(isShown(lines[0]));
    EXPECT_TRUE(isShown(lines[1]));
    g_unsetenv("G_MESSAGES_DEBUG");
}

TEST_F(GLibLogTest, PercentSignsAndLineFeedsAreText) {
    log->error("100%s %n\nhttp://a/%20");
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].field("MESSAGE"), "100%s %n\nhttp://a/%20");
}

TEST_F(GLibLogTest, TheDefaultLogHasNeitherDomainNorCategory) {
    system.defaultLog().error("Load timed out after 30s");
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].field("GLIB_DOMAIN"), "(none)");
    EXPECT_EQ(lines[0].field("CATEGORY"), "(none)");
    EXPECT_EQ(lines[0].field("MESSAGE"), "Load timed out after 30s");
}

TEST_F(GLibLogTest, AnErrorNeverEndsAProcessThatTakesWarningsAsFatal) {
    auto const before = g_log_set_always_fatal(
        static_cast<GLogLevelFlags>(G_LOG_LEVEL_ERROR | G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING));
    EXPECT_EXIT(
        {
            forwarding = true;
            log->error("showError: Could not connect.");
            std::exit(7);
        },
        testing::ExitedWithCode(7), "showError: Could not connect\\.");
    g_log_set_always_fatal(before);
}

} // namespace fcp::test
