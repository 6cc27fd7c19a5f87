#include "Workbench/ReviewPage/PageServer.h"

#include "Workbench/ReviewPage/RawHttp.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <malloc.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <type_traits>

namespace workbench {
namespace {

static_assert(!std::is_copy_constructible_v<PageServer> && !std::is_move_constructible_v<PageServer>);

// Holds a port of 127.0.0.1, or of ::1, as another program would.
class TakenPort {
public:
    explicit TakenPort(int family)
        : socket(::socket(family, SOCK_STREAM | SOCK_CLOEXEC, 0))
        , held(socket >= 0 && bindLoopback(family) && ::listen(socket, 1) == 0) {}

    ~TakenPort() { ::close(socket); }

    TakenPort(TakenPort const&) = delete;
    TakenPort& operator=(TakenPort const&) = delete;

    [[nodiscard]] std::uint16_t number() const {
        sockaddr_in6 address{}; // the port lies at the same place in both kinds
        socklen_t size = sizeof address;
        ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
        return ntohs(address.sin6_port);
    }

    [[nodiscard]] bool isHeld() const { return held; }

private:
    [[nodiscard]] bool bindLoopback(int family) const {
        sockaddr_in address4{};
        address4.sin_family = AF_INET;
        address4.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        sockaddr_in6 address6{};
        address6.sin6_family = AF_INET6;
        address6.sin6_addr = in6addr_loopback;
        if (family == AF_INET)
            return ::bind(socket, reinterpret_cast<sockaddr*>(&address4), sizeof address4) == 0;
        return ::bind(socket, reinterpret_cast<sockaddr*>(&address6), sizeof address6) == 0;
    }

    int socket;
    bool held;
};

class PageServerTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(server.start(), std::nullopt); }

    [[nodiscard]] std::string ownHost() const { return "localhost:" + std::to_string(server.port()); }

    [[nodiscard]] std::string get(std::string const& path) const {
        return exchange(server.port(), "GET " + path, ownHost());
    }

    PageServer server{0};
};

std::string statusOf(std::string const& answer) {
    return answer.substr(0, answer.find('\r'));
}

// Bytes that the process has allocated and not freed, or 0 where a sanitizer does the allocating.
std::size_t memoryInUse() {
    auto const use = mallinfo2();
    return use.uordblks + use.hblkhd;
}

bool contains(std::string const& text, std::string const& part) {
    return text.find(part) != std::string::npos;
}

TEST_F(PageServerTest, ServesTheReviewPageUnderThePanelsPath) {
    auto const answer = get("/fcp-panel/login");
    EXPECT_EQ(statusOf(answer), "HTTP/1.1 200 OK");
    EXPECT_TRUE(contains(answer, "\r\nContent-Type: text/html; charset=utf-8\r\n"));
    EXPECT_TRUE(contains(answer, "<!DOCTYPE html>"));
    EXPECT_EQ(server.pageURL(), "http://" + ownHost() + "/fcp-panel/login");
}

TEST_F(PageServerTest, ServesEveryFileOfThePageWithItsType) {
    auto const style = get("/fcp-panel/panel.css");
    EXPECT_TRUE(contains(style, "\r\nContent-Type: text/css; charset=utf-8\r\n"));
    EXPECT_TRUE(contains(style, "#171714"));
    auto const script = get("/fcp-panel/panel.js");
    EXPECT_TRUE(contains(script, "\r\nContent-Type: text/javascript; charset=utf-8\r\n"));
    EXPECT_TRUE(contains(script, "fcpBridge"));
}

TEST_F(PageServerTest, SendsTheSafetyHeadersWithEveryAnswer) {
    std::string const answers[] = {get("/fcp-panel/login"), get("/nothing"),
                                   exchange(server.port(), "POST /fcp-panel/login", ownHost()),
                                   exchange(server.port(), "GET /fcp-panel/login", "evil.example")};
    for (auto const& answer : answers) {
        EXPECT_TRUE(contains(answer,
                             "\r\nContent-Security-Policy: default-src 'none'; script-src 'self'; style-src "
                             "'self'; img-src 'self' data:; connect-src 'self'; base-uri 'none'; form-action "
                             "'none'; frame-ancestors 'none'\r\n"))
            << answer;
        for (auto const* header :
             {"X-Content-Type-Options: nosniff", "Referrer-Policy: no-referrer", "Cache-Control: no-store",
              "Cross-Origin-Opener-Policy: same-origin", "Cross-Origin-Resource-Policy: same-origin"})
            EXPECT_TRUE(contains(answer, std::string{"\r\n"} + header + "\r\n")) << header << " in\n"
                                                                                 << answer;
        EXPECT_FALSE(contains(answer, "\r\nServer:")) << answer;
    }
}

TEST_F(PageServerTest, AnswersOnBothLoopbackAddresses) {
    auto const port = ":" + std::to_string(server.port());
    std::string const request = "GET /fcp-panel/login";
    EXPECT_EQ(statusOf(exchange(server.port(), request, "127.0.0.1" + port)), "HTTP/1.1 200 OK");
    EXPECT_EQ(statusOf(exchange(server.port(), request, "[::1]" + port, RawHttp::Family::IPv6)),
              "HTTP/1.1 200 OK");
}

TEST_F(PageServerTest, RefusesEveryOtherHost) {
    auto const port = ":" + std::to_string(server.port());
    for (auto const& host :
         {std::string{"evil.example"}, "evil.example" + port, std::string{"localhost"},
          std::string{"localhost:1"}, "LOCALHOST" + port, "127.0.0.2" + port, std::string{}})
        EXPECT_EQ(statusOf(exchange(server.port(), "GET /fcp-panel/login", host)),
                  "HTTP/1.1 421 Misdirected Request")
            << host;
}

TEST_F(PageServerTest, RefusesARequestWithoutAHostAndOneWithTwo) {
    RawHttp without{server.port()};
    without.send("GET /fcp-panel/login HTTP/1.0\r\n\r\n");
    EXPECT_EQ(statusOf(without.readToEnd()).substr(9), "421 Misdirected Request");
    RawHttp two{server.port()};
    two.send("GET /fcp-panel/login HTTP/1.1\r\nHost: evil.example\r\nHost: " + ownHost() +
             "\r\nConnection: close\r\n\r\n");
    EXPECT_EQ(statusOf(two.readToEnd()), "HTTP/1.1 421 Misdirected Request");
}

TEST_F(PageServerTest, AllowsOnlyGetAndHead) {
    for (auto const* method : {"POST", "PUT", "DELETE", "OPTIONS", "TRACE", "get", "X"}) {
        auto const answer = exchange(server.port(), std::string{method} + " /fcp-panel/login", ownHost());
        EXPECT_EQ(statusOf(answer), "HTTP/1.1 405 Method Not Allowed") << method;
        EXPECT_TRUE(contains(answer, "\r\nAllow: GET, HEAD\r\n")) << method;
    }
}

TEST_F(PageServerTest, KeepsNothingOfABody) {
    auto const before = memoryInUse();
    RawHttp client{server.port()};
    auto const piece = std::string(1 << 20, 'x');
    client.send("POST /fcp-panel/login HTTP/1.1\r\nHost: " + ownHost() +
                "\r\nContent-Length: 67108864\r\n\r\n");
    for (int sent = 0; sent < 63; ++sent)
        client.send(piece);
    EXPECT_LT(memoryInUse(), before + 16 * piece.size());
    client.send(piece);
    EXPECT_TRUE(client.readUntil("405 Method Not Allowed"));
}

TEST_F(PageServerTest, AnswersHeadWithTheHeadersAlone) {
    auto const head = exchange(server.port(), "HEAD /fcp-panel/login", ownHost());
    EXPECT_EQ(statusOf(head), "HTTP/1.1 200 OK");
    EXPECT_TRUE(contains(head, "\r\nContent-Length: "));
    EXPECT_TRUE(head.ends_with("\r\n\r\n"));
}

TEST_F(PageServerTest, KnowsNoOtherPath) {
    for (auto const* path : {"/", "/fcp-panel", "/fcp-panel/", "/fcp-panel/login/", "/fcp-panel/login.html",
                             "/fcp-panel/../fcp-panel/secret", "/../../etc/passwd",
                             "/fcp-panel/%2e%2e/%2e%2e/etc/passwd", "/favicon.ico", "/FCP-PANEL/login"})
        EXPECT_EQ(statusOf(get(path)), "HTTP/1.1 404 Not Found") << path;
}

TEST_F(PageServerTest, TakesAQueryForPartOfNoPath) {
    EXPECT_EQ(statusOf(get("/fcp-panel/login?from=panel")), "HTTP/1.1 200 OK");
}

TEST_F(PageServerTest, SaysThatThePortIsTakenAndNamesTheWayOut) {
    PageServer second{server.port()};
    EXPECT_EQ(second.start(),
              "Port " + std::to_string(server.port()) +
                  " is taken by another program, so the review page is not served and the panel is not "
                  "loaded. End that program, or start with --no-page to load the page that it serves.");
    EXPECT_FALSE(second.isServing());
}

TEST(PageServer, IsTakenWhenAStrangerHoldsEitherLoopbackAddress) {
    for (auto const family : {AF_INET, AF_INET6}) {
        TakenPort const stranger{family};
        ASSERT_TRUE(stranger.isHeld());
        PageServer server{stranger.number()};
        EXPECT_TRUE(server.start().has_value());
        EXPECT_FALSE(server.isServing());
        // Half a server would let the stranger answer for the other half.
        if (family == AF_INET6) {
            EXPECT_FALSE(RawHttp{stranger.number()}.isConnected());
        }
    }
}

TEST_F(PageServerTest, StopsListening) {
    server.stop();
    EXPECT_FALSE(server.isServing());
    EXPECT_EQ(get("/fcp-panel/login"), "(no connection)");
    EXPECT_FALSE(RawHttp(server.port(), RawHttp::Family::IPv6).isConnected());
}

TEST_F(PageServerTest, ClosesEveryOpenConnectionWhenItStops) {
    RawHttp idle{server.port()};
    RawHttp halfway{server.port()};
    halfway.send("GET /fcp-panel/lo");
    RawHttp kept{server.port()};
    kept.send("GET /fcp-panel/login HTTP/1.1\r\nHost: " + ownHost() + "\r\n\r\n");
    ASSERT_TRUE(kept.readUntil("</html>"));
    server.stop();
    EXPECT_EQ(idle.readToEnd(), "");
    EXPECT_EQ(halfway.readToEnd(), "");
    EXPECT_TRUE(kept.readToEnd().ends_with("</html>\n"));
}

TEST_F(PageServerTest, ServesAgainOnTheSamePortAsOftenAsAsked) {
    auto const port = server.port();
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(statusOf(get("/fcp-panel/login")), "HTTP/1.1 200 OK");
        server.stop();
        server.stop();
        ASSERT_EQ(server.start(), std::nullopt);
        ASSERT_EQ(server.start(), std::nullopt);
        EXPECT_EQ(server.port(), port);
    }
}

TEST_F(PageServerTest, StopsWhenDestroyed) {
    std::uint16_t port = 0;
    {
        PageServer shortLived{0};
        ASSERT_EQ(shortLived.start(), std::nullopt);
        port = shortLived.port();
        EXPECT_TRUE(RawHttp{port}.isConnected());
    }
    EXPECT_FALSE(RawHttp{port}.isConnected());
}

TEST(PageServer, ServesWhereThePanelsDevelopmentModeLooks) {
    PageServer server;
    ASSERT_EQ(server.start(), std::nullopt);
    EXPECT_EQ(server.pageURL(), "http://localhost:3000/fcp-panel/login");
    EXPECT_TRUE(contains(exchange(3000, "GET /fcp-panel/login", "localhost:3000"), "HTTP/1.1 200 OK"));
}

} // namespace
} // namespace workbench
