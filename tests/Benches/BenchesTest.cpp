// Every measuring program, in its quick form, against the real engine and a real bus.

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace {

struct Outcome {
    int status = -1;
    std::string output;
    std::string errors;
};

std::string taken(char* text) {
    std::string result = text ? text : "";
    g_free(text);
    return result;
}

Outcome run(std::string const& program, std::vector<std::string> const& arguments,
            std::vector<std::pair<std::string, std::string>> const& environment = {}) {
    auto const path = std::string(BENCH_FOLDER "/") + program;
    std::vector<char*> words{const_cast<char*>(path.c_str())};
    for (auto const& argument : arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    char** variables = g_get_environ();
    for (auto const& [name, value] : environment)
        variables = g_environ_setenv(variables, name.c_str(), value.c_str(), TRUE);
    char* output = nullptr;
    char* errors = nullptr;
    int status = -1;
    EXPECT_TRUE(g_spawn_sync(nullptr, words.data(), variables, G_SPAWN_DEFAULT, nullptr, nullptr, &output,
                             &errors, &status, nullptr))
        << path;
    g_strfreev(variables);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, taken(output), taken(errors)};
}

std::vector<std::string> linesOf(std::string const& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

bool isMeasure(std::string const& line, std::string const& what) {
    static std::regex const form(R"(: ours [0-9.]+\S* ?\S*, floor [0-9.]+\S* ?\S*, ratio [0-9.]+ )"
                                 R"(\([0-9.]+\.\.[0-9.]+\), bound [<>]= [0-9.]+: (within|BEYOND)(; .*)?)");
    return line.starts_with(what) && std::regex_match(line.substr(what.size()), form);
}

void expectMeasures(std::string const& program, std::vector<std::string> const& measures) {
    auto const outcome = run(program, {"--quick"});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    auto const lines = linesOf(outcome.output);
    for (auto const& what : measures)
        EXPECT_TRUE(std::ranges::any_of(lines, [&](auto const& line) { return isMeasure(line, what); }))
            << what << " is not among:\n"
            << outcome.output;
}

TEST(Benches, MeasureTheRoundTripOfARequest) {
    expectMeasures("bench-roundtrip",
                   {"getTimeline one at a time", "getTimeline 64 in flight",
                    "getTimeline one at a time with 100,000 time-outs pending, against none",
                    "getTimeline 64 in flight with 100,000 time-outs pending, against none"});
}

TEST(Benches, MeasureNotificationsFromBothThreads) {
    expectMeasures("bench-notifications",
                   {"500 notifications from the main thread", "500 notifications from another thread"});
}

TEST(Benches, MeasureTheWayToTheContainerAndBack) {
    expectMeasures("bench-container", {"container round trip"});
}

#ifdef MEASURES_PLAYBACK
TEST(Benches, MeasurePlaybackOfTheEditor) {
    expectMeasures("bench-playback", {"painted, 720p 25 to 640x360", "processor, 720p 25 to 640x360"});
}
#endif

TEST(Benches, MeasureALargeSynchronisation) {
    expectMeasures("bench-syncall", {"syncAllComments with 1 MB"});
}

TEST(Benches, MeasureTheStartAndTheMemory) {
    expectMeasures("bench-startup", {"process start to page finished", "memory of the UI process (PSS)",
                                     "memory of the web processes (PSS)"});
}

#if defined(BENCH_STORE)
TEST(Benches, MeasureTheStore) {
    expectMeasures("bench-store", {"all of 2000 comments into the store", "marker lookup among 2000"});
}

TEST(Benches, MeasureTheWayFromThePageIntoTheStore) {
    expectMeasures("bench-syncstore", {"syncAllComments with 500, from the page into the store"});
}
#endif

TEST(Benches, FailInsteadOfMeasuringWhereThereIsNoBus) {
    auto const outcome =
        run("bench-container", {"--quick"}, {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"}});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_NE(outcome.errors.find("The measuring failed: "), std::string::npos) << outcome.errors;
}

TEST(Benches, SayWhatTheyAre) {
    auto const outcome = run("bench-container", {"--help"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.output.find("the round trip of a container command"), std::string::npos);
}

TEST(Benches, RefuseWhatTheyDoNotUnderstand) {
    EXPECT_EQ(run("bench-container", {"--fast"}).status, 2);
    EXPECT_EQ(run("bench-container", {"--rounds"}).status, 2);
    EXPECT_EQ(run("bench-container", {"--rounds", "0"}).status, 2);
    EXPECT_EQ(run("bench-container", {"--rounds", "3x"}).status, 2);
}

} // namespace
