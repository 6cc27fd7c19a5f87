#include "Contract/ChildProcess.h"
#include "Contract/TestBus.h"
#include "Contract/TurnUntil.h"
#include "Doubles/FakeMainLoop.h"
#include "Doubles/FakeSystem.h"
#include "FcpExtension/ContainerAppBridge.h"
#include "Platform/Gtk/SdBusNotificationCenter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

using fcp::Json;
using fcp::Notification;
using fcp::test::ChildProcess;
using fcp::test::turnUntil;

namespace {

std::string const command = "com.zelvix.fcp.containerCommand";
std::string const response = "com.zelvix.fcp.containerResponse";

// What docs/container.md tells its reader to type, with this prefix.
std::vector<std::string> documentedLines(std::string const& prefix) {
    std::ifstream document(CONTAINER_DOCUMENT);
    std::vector<std::string> lines;
    for (std::string line; std::getline(document, line);)
        if (line.starts_with("    " + prefix))
            lines.push_back(line.substr(4));
    return lines;
}

std::string replaced(std::string text, std::string const& from, std::string const& to) {
    text.replace(text.find(from), from.size(), to);
    return text;
}

// Our side of the wire as a foreign program writes and reads it.
class Busctl : public testing::Test {
protected:
    Busctl() {
        bus.start();
        setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
        center = std::make_unique<fcp::SdBusNotificationCenter>(loop);
        center->observe(response,
                        [this](Notification const& notification) { bridge->handleResponse(notification); });
        center->observe("test.bus.ready", [this](Notification const&) { connected = true; });
        center->post("test.bus.ready", Json::object());
        EXPECT_TRUE(turnUntil([this] { return connected; }));
        bridge = fcp::ContainerAppBridge::create(*center, uuids, loop);
    }

    [[nodiscard]] static int run(std::string const& line) {
        ChildProcess shell({"sh", "-c", line});
        return shell.wait();
    }

    // Answers the first command of the bridge with a line of the document.
    [[nodiscard]] static int answer(std::string const& line) {
        return run(replaced(line, "req-1-5C08E1", "req-1-000001"));
    }

    fcp::test::TestBus bus;
    fcp::test::FakeMainLoop loop;
    fcp::test::FakeUuidGenerator uuids;
    std::unique_ptr<fcp::SdBusNotificationCenter> center;
    std::shared_ptr<fcp::ContainerAppBridge> bridge;
    bool connected = false;
};

// Shows the signals of the channel, one JSON text a line.
class Monitor {
public:
    explicit Monitor(std::string const& arguments)
        : busctl({"sh", "-c", "exec busctl --json=short " + arguments}, ChildProcess::Errors::Readable) {
        EXPECT_EQ(busctl.readLine(), "Monitoring bus message stream.");
    }

    [[nodiscard]] Json next() { return Json::parse(busctl.readLine(), nullptr, false); }

private:
    ChildProcess busctl;
};

TEST_F(Busctl, SeesEveryValueWithItsDocumentedType) {
    auto const lines = documentedLines("busctl --user monitor");
    ASSERT_EQ(lines.size(), 1U);
    Monitor monitor(lines[0].substr(std::string("busctl ").size()));
    center->post(command, {{"command", "syncComment"},
                           {"requestId", "req-1-5C08E1"},
                           {"yes", true},
                           {"integer", -3},
                           {"large", std::numeric_limits<std::uint64_t>::max()},
                           {"real", 12.5},
                           {"whole", 2.0},
                           {"text", "Łódź \xFF"},
                           {"list", {"a", 1, nullptr}},
                           {"none", Json::array()},
                           {"object", {{"k", false}}},
                           {"null", nullptr}});
    auto const seen = monitor.next();
    EXPECT_EQ(seen["type"], "signal");
    EXPECT_EQ(seen["path"], "/com/zelvix/fcp");
    EXPECT_EQ(seen["interface"], "com.zelvix.fcp");
    EXPECT_EQ(seen["member"], "containerCommand");
    EXPECT_FALSE(seen.contains("destination"));
    auto const value = [](char const* type, Json const& data) {
        return Json{{"type", type}, {"data", data}};
    };
    EXPECT_EQ(
        seen["payload"],
        value("a{sv}", Json::array({{{"command", value("s", "syncComment")},
                                     {"requestId", value("s", "req-1-5C08E1")},
                                     {"yes", value("b", true)},
                                     {"integer", value("x", -3)},
                                     {"large", value("t", std::numeric_limits<std::uint64_t>::max())},
                                     {"real", value("d", 12.5)},
                                     {"whole", value("d", 2.0)},
                                     {"text", value("s", "Łódź \uFFFD")},
                                     {"list", value("av", {value("s", "a"), value("x", 1), value("g", "")})},
                                     {"none", value("av", Json::array())},
                                     {"object", value("a{sv}", {{"k", value("b", false)}})},
                                     {"null", value("g", "")}}})));
}

TEST_F(Busctl, SeesTheBridgesCommandAndAnswersItByHand) {
    auto const lines = documentedLines("busctl --user emit /com/zelvix/fcp com.zelvix.fcp containerResponse");
    ASSERT_EQ(lines.size(), 4U);
    Monitor monitor("--user monitor --match=\"type='signal',member='containerCommand'\"");
    std::optional<bool> done;
    bridge->syncComment({{"id", "c1"}},
                        {"syncComment(_:)", [&done](auto outcome) { done = std::get<bool>(outcome); }});
    EXPECT_EQ(monitor.next()["payload"]["data"][0]["requestId"]["data"], "req-1-000001");
    EXPECT_EQ(answer(lines[0]), 0);
    EXPECT_TRUE(turnUntil([&done] { return done.has_value(); }));
    EXPECT_EQ(done, true);
    EXPECT_EQ(bridge->pendingRequestCount(), 0U);
}

TEST_F(Busctl, AnswersAFolderByHand) {
    std::optional<std::string> folder;
    bridge->selectOutputFolder({"selectOutputFolder()", [&folder](auto outcome) {
                                    folder = std::get<std::optional<std::string>>(outcome).value_or("none");
                                }});
    EXPECT_EQ(answer(documentedLines("busctl --user emit")[1]), 0);
    EXPECT_TRUE(turnUntil([&folder] { return folder.has_value(); }));
    EXPECT_EQ(folder, "/home/me/Exports");
}

TEST_F(Busctl, AnswersAMarkerAndNoMarkerByHand) {
    for (auto const& [line, expected] : {std::pair<std::size_t, Json>(2, {{"id", "c1"}, {"start", 12.5}}),
                                         std::pair<std::size_t, Json>(3, nullptr)}) {
        bridge = fcp::ContainerAppBridge::create(*center, uuids = {}, loop);
        std::optional<Json> marker;
        bridge->getMarkerAtTime(12.5, 0.5, {"getMarkerAtTime(seconds:threshold:)", [&marker](auto outcome) {
                                                marker =
                                                    std::get<std::optional<Json>>(outcome).value_or(nullptr);
                                            }});
        EXPECT_EQ(answer(documentedLines("busctl --user emit")[line]), 0);
        EXPECT_TRUE(turnUntil([&marker] { return marker.has_value(); }));
        EXPECT_EQ(marker, expected);
    }
}

TEST_F(Busctl, PlaysThePanelByHand) {
    std::optional<Json> heard;
    center->observe(command, [&heard](Notification const& notification) { heard = notification.userInfo; });
    auto const lines = documentedLines("busctl --user emit /com/zelvix/fcp com.zelvix.fcp containerCommand");
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_TRUE(
        turnUntil([&] { return run(lines[0]) == 0 && (fcp::test::turnWhileReady(), heard.has_value()); }));
    EXPECT_EQ(heard, (Json{{"command", "getMarkerAtTime"},
                           {"requestId", "req-1-000000"},
                           {"seconds", 12.5},
                           {"threshold", 0.5}}));
}

} // namespace
