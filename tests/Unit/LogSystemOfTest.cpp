#include "FcpExtension/LogSystemOf.h"

#include <gtest/gtest.h>

#include <vector>

namespace fcp::test {

namespace {

std::vector<std::string> lines;

class NamedLog final : public Log {
public:
    NamedLog() = default;

    NamedLog(std::string const& subsystem, std::string const& category)
        : name(subsystem + "/" + category) {}

    void debug(std::string const& line) override { lines.push_back(name + ": " + line); }

    void info(std::string const& line) override { lines.push_back(name + ": " + line); }

    void error(std::string const& line) override { lines.push_back(name + ": " + line); }

private:
    std::string const name = "default";
};

TEST(LogSystemOf, MakesALogOfSubsystemAndCategoryThatOutlivesIt) {
    lines.clear();
    auto system = std::make_unique<LogSystemOf<NamedLog>>();
    auto const log = system->makeLog("a", "b");
    EXPECT_NE(log, system->makeLog("a", "b"));
    system.reset();
    log->info("still here");
    EXPECT_EQ(lines, std::vector<std::string>{"a/b: still here"});
}

TEST(LogSystemOf, HasOneDefaultLogWithoutThem) {
    lines.clear();
    LogSystemOf<NamedLog> system;
    EXPECT_EQ(&system.defaultLog(), &system.defaultLog());
    system.defaultLog().error("late");
    EXPECT_EQ(lines, std::vector<std::string>{"default: late"});
}

} // namespace

} // namespace fcp::test
