#include "Workbench/ContainerApp/BusClient.h"

#include "Workbench/ContainerApp/BusValue.h"

#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include <chrono>

namespace workbench {

namespace {

constexpr char const* containerName = "com.zelvix.fcp.Container";
constexpr char const* markersPath = "/com/zelvix/fcp/Markers";
constexpr char const* markersInterface = "com.zelvix.fcp.Markers1";
constexpr std::uint64_t patienceMicroseconds = 20'000'000; // of patience

BusMessage call(Bus& bus, BusMessage const& message, std::string& error) {
    sd_bus_message* answer = nullptr;
    auto problem = sd_bus_error{};
    sd_bus_call(bus.handle(), message.get(), patienceMicroseconds, &problem, &answer);
    error = problem.name ? problem.name : "";
    sd_bus_error_free(&problem);
    return BusMessage{answer};
}

} // namespace

BusClient::BusClient() {
    auto problem = std::string{};
    bus = Bus::open(problem);
    if (!bus)
        throw std::runtime_error{"the tests need a session bus: " + problem};
    auto const heard = bus->match("type='signal',interface='com.zelvix.fcp',member='containerResponse'",
                                  [this](sd_bus_message* message) {
                                      EXPECT_GT(sd_bus_message_has_signature(message, "a{sv}"), 0);
                                      auto const answer = readDictionary(message).value();
                                      results[answer.at("requestId")].push_back(answer.at("result"));
                                  }) &&
                       bus->match("type='signal',interface='com.zelvix.fcp.Markers1',member='MarkersChanged'",
                                  [this](sd_bus_message* message) {
                                      char const* key = nullptr;
                                      auto change = Change{};
                                      sd_bus_message_read(message, "st", &key, &change.revision);
                                      change.sequenceKey = key;
                                      heardChanges.push_back(change);
                                  });
    EXPECT_TRUE(heard);
}

std::string BusClient::send(std::string const& command, Json arguments) {
    auto const requestId = "req-" + std::to_string(++counter) + "-5C08E1";
    arguments["command"] = command;
    arguments["requestId"] = requestId;
    sendDictionary(arguments);
    return requestId;
}

void BusClient::sendDictionary(Json const& dictionary) {
    sendSignal([&](sd_bus_message* message) {
        sd_bus_message_open_container(message, 'a', "{sv}");
        for (auto const& [key, value] : dictionary.items())
            EXPECT_GE(appendMember(message, key, value), 0);
        sd_bus_message_close_container(message);
    });
}

void BusClient::sendSignal(std::function<void(sd_bus_message*)> const& fill) {
    auto const message = bus->signal("/com/zelvix/fcp", "com.zelvix.fcp", "containerCommand");
    fill(message.get());
    EXPECT_TRUE(bus->send(message));
}

Json BusClient::request(std::string const& command, Json arguments) {
    auto const requestId = send(command, std::move(arguments));
    if (!waitFor([&] { return !answers(requestId).empty(); }))
        return "no answer";
    settle();
    EXPECT_EQ(1U, answers(requestId).size()) << command;
    return answers(requestId).front();
}

std::vector<Json> BusClient::answers(std::string const& requestId) const {
    auto const found = results.find(requestId);
    return found == results.end() ? std::vector<Json>{} : found->second;
}

std::size_t BusClient::answerCount() const {
    auto count = std::size_t{0};
    for (auto const& [requestId, values] : results)
        count += values.size();
    return count;
}

void BusClient::settle() {
    settleWith(containerName, markersPath);
}

void BusClient::settleWithBus() {
    settleWith("org.freedesktop.DBus", "/org/freedesktop/DBus");
}

void BusClient::settleWith(char const* destination, char const* path) {
    auto error = std::string{};
    std::ignore = call(*bus, bus->methodCall(destination, path, "org.freedesktop.DBus.Peer", "Ping"), error);
    EXPECT_EQ("", error);
    while (sd_bus_process(bus->handle(), nullptr) > 0) {
    }
}

bool BusClient::waitFor(std::function<bool()> const& condition) {
    auto const deadline = std::chrono::steady_clock::now() + std::chrono::microseconds{patienceMicroseconds};
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        if (sd_bus_process(bus->handle(), nullptr) == 0)
            sd_bus_wait(bus->handle(), 10'000);
    }
    return true;
}

Json BusClient::markers(std::string const& sequenceKey) {
    auto const message = bus->methodCall(containerName, markersPath, markersInterface, "GetMarkers");
    sd_bus_message_append(message.get(), "s", sequenceKey.c_str());
    auto error = std::string{};
    auto const answer = call(*bus, message, error);
    if (!answer)
        return {{"error", error}};
    auto revision = std::uint64_t{};
    sd_bus_message_read(answer.get(), "t", &revision);
    auto list = Json::array();
    sd_bus_message_enter_container(answer.get(), 'a', "a{sv}");
    while (sd_bus_message_at_end(answer.get(), 0) == 0)
        list.push_back(readDictionary(answer.get()).value());
    return {{"revision", revision}, {"markers", list}};
}

} // namespace workbench
