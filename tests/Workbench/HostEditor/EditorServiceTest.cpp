#include "Workbench/HostEditor/EditorService.h"

#include "Workbench/HostEditor/BusFixture.h"

#include <systemd/sd-bus.h>

#include <chrono>
#include <memory>

namespace workbench {
namespace {

constexpr auto Name = "com.zelvix.fcp.Editor";
constexpr auto Path = "/com/zelvix/fcp/Editor";
constexpr auto Interface = "com.zelvix.fcp.Editor1";
constexpr auto Properties = "org.freedesktop.DBus.Properties";

SequenceFacts film() {
    return {.key = "file:///a.mp4#{7}",
            .uri = "file:///a.mp4",
            .name = "Schöner Film",
            .rate = {30000, 1001},
            .length = 300,
            .marks = {}};
}

// Another program that hears of changes. What it has heard, the bus had given it when it was asked last.
class Listener {
public:
    explicit Listener(std::string const& address) {
        sd_bus* made = nullptr;
        sd_bus_new(&made);
        connection.reset(made);
        sd_bus_set_address(made, address.c_str());
        sd_bus_set_bus_client(made, 1);
        sd_bus_start(made);
        auto const count = [](sd_bus_message*, void* self, sd_bus_error*) {
            ++static_cast<Listener*>(self)->changes;
            return 0;
        };
        sd_bus_match_signal(made, nullptr, nullptr, Path, Properties, "PropertiesChanged", count, this);
    }

    int heard() {
        sd_bus_call_method(connection.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                           "org.freedesktop.DBus", "GetId", nullptr, nullptr, "");
        while (sd_bus_process(connection.get(), nullptr) > 0) {
        }
        return changes;
    }

private:
    std::unique_ptr<sd_bus, decltype(&sd_bus_flush_close_unref)> connection{nullptr,
                                                                            &sd_bus_flush_close_unref};
    int changes = 0;
};

class Service : public BusTest {
protected:
    // The property as text, as another program reads it.
    std::string read() {
        auto const answer = call(asker, Name, Path, Properties, "Get",
                                 Glib::VariantContainerBase::create_tuple(
                                     {Glib::Variant<Glib::ustring>::create(Interface),
                                      Glib::Variant<Glib::ustring>::create("ActiveSequence")}));
        return answer ? answer.print(true).raw() : "no answer";
    }

    bool waitForName() {
        return waitUntil([this] { return isOwned(asker, Name); });
    }

    SessionBus bus;
    EditorService service{bus};
    Glib::RefPtr<Gio::DBus::Connection> asker = stranger();
};

TEST_F(Service, TellsThatThereIsNoSequence) {
    ASSERT_TRUE(waitForName());
    EXPECT_EQ(read(), "(<@a{sv} {}>,)");
}

TEST_F(Service, TellsTheActiveSequenceWithItsExactRate) {
    service.setActiveSequence(film());
    ASSERT_TRUE(waitForName());
    EXPECT_EQ(read(), "(<{'dropFrame': <true>, 'durationFrames': <int64 300>, "
                      "'frameDuration': <(int64 1001, int64 30000)>, 'key': <'file:///a.mp4#{7}'>, "
                      "'name': <'Schöner Film'>, 'start': <int64 0>, 'uri': <'file:///a.mp4'>}>,)");
}

TEST_F(Service, TellsWhereNoLabelIsLeftOut) {
    auto sequence = film();
    for (auto const rate : {FrameRate{24000, 1001}, FrameRate{25, 1}, FrameRate{30, 1}}) {
        sequence.rate = rate;
        service.setActiveSequence(sequence);
        ASSERT_TRUE(waitForName());
        EXPECT_NE(read().find("'dropFrame': <false>"), std::string::npos) << rate.numerator;
    }
}

TEST_F(Service, TellsOfChanges) {
    ASSERT_TRUE(waitForName());
    std::string heard;
    asker->signal_subscribe(
        [&](auto const&, auto const&, auto const&, auto const&, auto const&,
            Glib::VariantContainerBase const& arguments) { heard = arguments.print(true).raw(); },
        Name, Properties, "PropertiesChanged", Path);
    // An answered call puts the subscription in force.
    read();
    service.setActiveSequence(film());
    ASSERT_TRUE(waitUntil([&] { return !heard.empty(); }));
    EXPECT_EQ(heard.rfind("('com.zelvix.fcp.Editor1', {'ActiveSequence': <{'dropFrame': <true>, ", 0), 0U)
        << heard;
    heard.clear();
    service.setActiveSequence({});
    ASSERT_TRUE(waitUntil([&] { return !heard.empty(); }));
    EXPECT_EQ(heard, "('com.zelvix.fcp.Editor1', {'ActiveSequence': <@a{sv} {}>}, @as [])");
}

TEST_F(Service, HasToldTheBusWhenItReturns) {
    ASSERT_TRUE(waitForName());
    Listener listener{daemon.address()};
    for (auto changes = 1; changes <= 100; ++changes) {
        service.setActiveSequence(film());
        ASSERT_EQ(listener.heard(), changes);
    }
}

TEST_F(Service, WaitsOnlyForAMomentForABusThatStandsStill) {
    using namespace std::chrono;
    ASSERT_TRUE(waitForName());
    daemon.stall();
    auto const before = steady_clock::now();
    service.setActiveSequence(film());
    EXPECT_LT(steady_clock::now() - before, 10s);
    daemon.resume();
    EXPECT_NE(read().find("Schöner Film"), std::string::npos);
}

TEST_F(Service, ComesBackWithTheBus) {
    service.setActiveSequence(film());
    ASSERT_TRUE(waitForName());
    daemon.kill();
    ASSERT_TRUE(waitUntil([this] { return !bus.connection(); }));
    service.setActiveSequence({});
    daemon.start();
    ASSERT_TRUE(waitUntil([this] { return static_cast<bool>(bus.connection()); }));
    asker = stranger();
    ASSERT_TRUE(waitForName());
    EXPECT_EQ(read(), "(<@a{sv} {}>,)");
}

TEST(ServiceWithoutABus, BearsEverything) {
    Gio::init();
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/at/all", 1);
    SessionBus bus;
    EXPECT_FALSE(bus.connection());
    EditorService service{bus};
    service.setActiveSequence(film());
    service.setActiveSequence({});
}

} // namespace
} // namespace workbench
