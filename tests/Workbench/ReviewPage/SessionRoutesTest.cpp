#include "Workbench/ReviewPage/PageServer.h"
#include "Workbench/ReviewPage/RawHttp.h"
#include "Workbench/ReviewPage/SessionDesk.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace workbench {
namespace {

class Recorder final : public RecordingDesk {
public:
    [[nodiscard]] std::int64_t began() const override { return 1795000000123; }

    void keep(std::string const& lines) override { kept.push_back(lines); }

    std::vector<std::string> kept;
};

class Player final : public ReplayDesk {
public:
    [[nodiscard]] std::string const& recording() override { return lines; }

    void movePlayhead(double seconds) override { moves.push_back(seconds); }

    void activate(std::string const& sequence) override { sequences.push_back(sequence); }

    void report(std::string const& outcome) override { reports.push_back(outcome); }

    std::string lines = "{\"by\":\"page\"}\n";
    std::vector<double> moves;
    std::vector<std::string> sequences;
    std::vector<std::string> reports;
};

class Session : public ::testing::Test {
protected:
    void serve(SessionDesk desk) {
        server = std::make_unique<PageServer>(0, desk);
        ASSERT_EQ(server->start(), std::nullopt);
    }

    [[nodiscard]] std::string host() const { return "localhost:" + std::to_string(server->port()); }

    [[nodiscard]] std::string get(std::string const& path) const {
        return exchange(server->port(), "GET " + path, host());
    }

    [[nodiscard]] std::string post(std::string const& path, std::string const& body) const {
        return post(path, body, "Origin: http://" + host() + "\r\n");
    }

    [[nodiscard]] std::string post(std::string const& path, std::string const& body,
                                   std::string const& origin) const {
        return send("POST " + path + " HTTP/1.1\r\nHost: " + host() + "\r\n" + origin +
                    "Connection: close\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
                    body);
    }

    [[nodiscard]] std::string send(std::string const& request) const {
        RawHttp client{server->port()};
        client.send(request);
        return client.readToEnd();
    }

    Recorder recorder;
    Player player;
    std::unique_ptr<PageServer> server;
};

std::string statusOf(std::string const& answer) {
    return answer.substr(0, answer.find('\r'));
}

std::string bodyOf(std::string const& answer) {
    return answer.substr(answer.find("\r\n\r\n") + 4);
}

constexpr auto NoContent = "HTTP/1.1 204 No Content";
constexpr auto NotAllowed = "HTTP/1.1 405 Method Not Allowed";
constexpr auto AllPaths = {"/fcp-panel/session/lines", "/fcp-panel/session/playhead",
                           "/fcp-panel/session/sequence", "/fcp-panel/session/report"};

TEST_F(Session, IsNoMatterOfAnOrdinaryRun) {
    serve({});
    EXPECT_EQ(get("/fcp-panel/login").find("id=\"session\""), std::string::npos);
    EXPECT_EQ(statusOf(get("/fcp-panel/session/recording")), "HTTP/1.1 404 Not Found");
    for (auto const* const path : AllPaths)
        EXPECT_EQ(statusOf(post(path, "1")), NotAllowed) << path;
}

TEST_F(Session, TellsThePageInItsHeadThatItIsRecorded) {
    serve(&recorder);
    EXPECT_NE(get("/fcp-panel/login")
                  .find(R"(<head><script type="application/json" id="session">)"
                        R"({"mode":"record","began":1795000000123}</script>)"),
              std::string::npos);
    EXPECT_EQ(get("/fcp-panel/panel.js").find(R"("began":1795000000123)"), std::string::npos);
}

TEST_F(Session, TellsThePageInItsHeadThatItPlaysBack) {
    serve(&player);
    EXPECT_NE(get("/fcp-panel/login")
                  .find(R"(<head><script type="application/json" id="session">{"mode":"replay"}</script>)"),
              std::string::npos);
}

TEST_F(Session, KeepsWhatThePagePosts) {
    serve(&recorder);
    EXPECT_EQ(statusOf(post("/fcp-panel/session/lines", "{\"by\":\"panel\"}")), NoContent);
    EXPECT_EQ(recorder.kept, std::vector<std::string>{"{\"by\":\"panel\"}"});
}

TEST_F(Session, HandsTheRecordingOut) {
    serve(&player);
    EXPECT_EQ(bodyOf(get("/fcp-panel/session/recording")), "{\"by\":\"page\"}\n");
}

TEST_F(Session, DoesWhatTheReplayAsksFor) {
    serve(&player);
    EXPECT_EQ(statusOf(post("/fcp-panel/session/playhead", "0.03336666666666667")), NoContent);
    EXPECT_EQ(statusOf(post("/fcp-panel/session/sequence", "{\"name\":\"film\"}")), NoContent);
    EXPECT_EQ(statusOf(post("/fcp-panel/session/report", "{\"compared\":1}")), NoContent);
    EXPECT_EQ(player.moves, std::vector<double>{0.03336666666666667});
    EXPECT_EQ(player.sequences, std::vector<std::string>{"{\"name\":\"film\"}"});
    EXPECT_EQ(player.reports, std::vector<std::string>{"{\"compared\":1}"});
}

TEST_F(Session, RefusesAPositionThatIsNone) {
    serve(&player);
    for (auto const* const seconds : {"", "x", "4 2", "nan", "inf", "1e999", " 1"})
        EXPECT_EQ(statusOf(post("/fcp-panel/session/playhead", seconds)), "HTTP/1.1 400 Bad Request")
            << seconds;
    EXPECT_TRUE(player.moves.empty());
}

TEST_F(Session, TakesNothingFromAnotherPage) {
    serve(&recorder);
    for (auto const* const origin :
         {"", "Origin: null\r\n", "Origin: http://localhost:1\r\n", "Origin: https://example.org\r\n"})
        EXPECT_EQ(statusOf(post("/fcp-panel/session/lines", "x", origin)), "HTTP/1.1 403 Forbidden")
            << origin;
    EXPECT_TRUE(recorder.kept.empty());
}

TEST_F(Session, HasThePathsOfItsDeskOnly) {
    serve(&recorder);
    for (auto const* const path : {"/fcp-panel/login", "/fcp-panel/session", "/fcp-panel/session/recording",
                                   "/fcp-panel/session/playhead", "/fcp-panel/session/report"})
        EXPECT_EQ(statusOf(post(path, "1")), NotAllowed) << path;
    EXPECT_EQ(statusOf(get("/fcp-panel/session/recording")), "HTTP/1.1 404 Not Found");
    serve(&player);
    for (auto const* const path : {"/fcp-panel/session/lines", "/fcp-panel/session/recording"})
        EXPECT_EQ(statusOf(post(path, "1")), NotAllowed) << path;
}

TEST_F(Session, RefusesABodyLargerThanAnyRecordingNeeds) {
    serve(&recorder);
    std::string const body(64 * 1024 * 1024 + 1, 'x');
    EXPECT_EQ(statusOf(post("/fcp-panel/session/lines", body)), "HTTP/1.1 413 Request Entity Too Large");
    EXPECT_TRUE(recorder.kept.empty());
}

TEST_F(Session, RefusesABodyWithoutALength) {
    serve(&recorder);
    EXPECT_EQ(
        statusOf(send("POST /fcp-panel/session/lines HTTP/1.1\r\nHost: " + host() + "\r\nOrigin: http://" +
                      host() + "\r\nConnection: close\r\nTransfer-Encoding: chunked\r\n\r\n" +
                      "1\r\nx\r\n0\r\n\r\n")),
        "HTTP/1.1 411 Length Required");
    EXPECT_TRUE(recorder.kept.empty());
}

} // namespace
} // namespace workbench
