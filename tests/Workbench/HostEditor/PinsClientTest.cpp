#include "Workbench/HostEditor/PinsClient.h"

#include "Workbench/HostEditor/BusFixture.h"
#include "Workbench/HostEditor/ContainerName.h"

#include <map>

namespace workbench {
namespace {

constexpr auto Path = "/com/zelvix/fcp/Markers";
constexpr auto Interface = "com.zelvix.fcp.Markers1";
constexpr auto Description = R"(<node><interface name="com.zelvix.fcp.Markers1">
  <method name="GetMarkers"><arg type="s" direction="in"/><arg type="t" direction="out"/>
    <arg type="aa{sv}" direction="out"/></method>
</interface></node>)";

using Invocation = Glib::RefPtr<Gio::DBus::MethodInvocation>;

// The container's side, in this process, on a connection of its own.
class Container {
public:
    explicit Container(Glib::RefPtr<Gio::DBus::Connection> own)
        : connection(std::move(own))
        , table([this](auto const&, auto const&, auto const&, auto const&, auto const&,
                       Glib::VariantContainerBase const& arguments, Invocation const& invocation) {
            Glib::Variant<Glib::ustring> key;
            arguments.get_child(key, 0);
            asked.push_back(key.get());
            if (holdsBack)
                held.push_back(invocation);
            else
                answer(invocation, key.get());
        }) {
        auto const description = Gio::DBus::NodeInfo::create_for_xml(Description);
        connection->register_object(Path, description->lookup_interface(Interface), table);
        auto const request = Glib::VariantContainerBase::create_tuple(
            {Glib::Variant<Glib::ustring>::create(ContainerName), Glib::Variant<guint32>::create(0)});
        connection->call_sync("/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName", request,
                              "org.freedesktop.DBus");
    }

    ~Container() { connection->close_sync(); }

    Container(Container const&) = delete;
    Container& operator=(Container const&) = delete;

    void tellChange(char const* key) const {
        connection->emit_signal(
            Path, Interface, "MarkersChanged", {},
            Glib::VariantContainerBase::create_tuple(
                {Glib::Variant<Glib::ustring>::create(key), Glib::Variant<guint64>::create(1)}));
    }

    void tellLast() const { connection->emit_signal(Path, "com.zelvix.Last", "Signal"); }

    void release() {
        holdsBack = false;
        for (auto const& invocation : std::exchange(held, {}))
            answer(invocation, asked.back());
    }

    std::map<std::string, char const*> markers; // by sequence, in GVariant's text form
    std::vector<std::string> asked;
    bool holdsBack = false;

private:
    void answer(Invocation const& invocation, std::string const& key) {
        auto const text =
            std::string{"(uint64 1, @aa{sv} "} + (markers.contains(key) ? markers[key] : "[]") + ")";
        Glib::VariantContainerBase value{g_variant_ref_sink(g_variant_new_parsed(text.c_str()))};
        invocation->return_value(value);
    }

    Glib::RefPtr<Gio::DBus::Connection> connection;
    Gio::DBus::InterfaceVTable table;
    std::vector<Invocation> held;
};

constexpr auto TwoMarkers =
    "[{'id': <'a'>, 'start': <1.5>, 'duration': <2.0>, 'text': <'Logo too small'>, 'author': <'Ana'>, "
    "'colour': <'#ff0000'>, 'resolved': <true>}, {'id': <'b'>, 'start': <3.0>}]";

class Pins : public BusTest {
protected:
    bool waitForPins(std::size_t count) {
        return waitUntil([this, count] { return client->pins().size() == count; });
    }

    SessionBus bus;
    std::shared_ptr<PinsClient> client = PinsClient::create(bus);
};

TEST_F(Pins, AreAskedForWhenTheContainerAppears) {
    client->follow("film");
    EXPECT_FALSE(client->isLive());
    Container container{stranger()};
    container.markers["film"] = TwoMarkers;
    ASSERT_TRUE(waitForPins(2));
    EXPECT_TRUE(client->isLive());
    EXPECT_EQ(client->pins()[0], (Pin{"a", 1.5, 2, "Logo too small", "Ana", "#ff0000", true}));
    EXPECT_EQ(client->pins()[1], (Pin{"b", 3, 0, "", "", "", false}));
}

TEST_F(Pins, AreAskedForAgainWhenTheyChange) {
    Container container{stranger()};
    client->follow("film");
    ASSERT_TRUE(waitUntil([&] { return container.asked.size() == 1; }));
    container.markers["film"] = TwoMarkers;
    container.tellChange("film");
    ASSERT_TRUE(waitForPins(2));
}

TEST_F(Pins, OfAnotherSequenceAreNotAskedFor) {
    Container container{stranger()};
    client->follow("film");
    ASSERT_TRUE(waitUntil([&] { return container.asked.size() == 1; }));
    container.tellChange("another");
    container.tellChange("film");
    ASSERT_TRUE(waitUntil([&] { return container.asked.size() >= 2; }));
    EXPECT_EQ(container.asked, (std::vector<std::string>{"film", "film"}));
}

TEST_F(Pins, ChangeWithTheSequence) {
    Container container{stranger()};
    container.markers["film"] = TwoMarkers;
    client->follow("film");
    ASSERT_TRUE(waitForPins(2));
    client->follow("another");
    EXPECT_TRUE(client->pins().empty());
    ASSERT_TRUE(waitUntil([&] { return container.asked.size() == 2; }));
    EXPECT_EQ(container.asked.back(), "another");
}

TEST_F(Pins, AreAskedForOnceHoweverManyChangesCome) {
    Container container{stranger()};
    container.holdsBack = true;
    client->follow("film");
    ASSERT_TRUE(waitUntil([&] { return container.asked.size() == 1; }));
    for (int change = 0; change < 50; ++change)
        container.tellChange("film");
    // They have all arrived when a later signal of the same sender has.
    bool isThrough = false;
    bus.connection()->signal_subscribe([&](auto const&...) { isThrough = true; }, {}, "com.zelvix.Last",
                                       "Signal");
    // The bus has the subscription once it answers.
    bus.connection()->call_sync("/org/freedesktop/DBus", "org.freedesktop.DBus.Peer", "Ping", {},
                                "org.freedesktop.DBus");
    container.tellLast();
    ASSERT_TRUE(waitUntil([&] { return isThrough; }));
    container.markers["film"] = TwoMarkers;
    container.release();
    ASSERT_TRUE(waitUntil([&] { return container.asked.size() == 2; }));
    ASSERT_TRUE(waitForPins(2));
    EXPECT_EQ(container.asked.size(), 2U);
}

TEST_F(Pins, ThatWereAskedForBeforeTheSequenceChangedAreDropped) {
    Container container{stranger()};
    container.markers["film"] = TwoMarkers;
    container.holdsBack = true;
    client->follow("film");
    ASSERT_TRUE(waitUntil([&] { return container.asked.size() == 1; }));
    client->follow("another");
    container.release(); // the answer to the first question
    ASSERT_TRUE(waitUntil([&] { return container.asked.size() == 2; }));
    EXPECT_TRUE(client->pins().empty());
}

TEST_F(Pins, StayWhenTheContainerGoes) {
    client->follow("film");
    {
        Container container{stranger()};
        container.markers["film"] = TwoMarkers;
        ASSERT_TRUE(waitForPins(2));
    }
    ASSERT_TRUE(waitUntil([this] { return !client->isLive(); }));
    EXPECT_EQ(client->pins().size(), 2U);
    Container const other{stranger()};
    ASSERT_TRUE(waitForPins(0));
    EXPECT_TRUE(client->isLive());
}

TEST_F(Pins, SurviveTheBus) {
    client->follow("film");
    {
        Container container{stranger()};
        container.markers["film"] = TwoMarkers;
        ASSERT_TRUE(waitForPins(2));
    }
    daemon.kill();
    ASSERT_TRUE(waitUntil([this] { return !bus.connection(); }));
    EXPECT_FALSE(client->isLive());
    daemon.start();
    ASSERT_TRUE(waitUntil([this] { return static_cast<bool>(bus.connection()); }));
    Container container{stranger()};
    container.markers["film"] = "[{'id': <'new'>}]";
    ASSERT_TRUE(waitForPins(1));
}

TEST_F(Pins, MayGoWhileAQuestionIsUnderWay) {
    Container container{stranger()};
    container.holdsBack = true;
    client->follow("film");
    ASSERT_TRUE(waitUntil([&] { return container.asked.size() == 1; }));
    client.reset();
    container.release();
    EXPECT_FALSE(waitUntil([] { return false; }, 100));
}

TEST(PinFromTheBus, CountsAWrongTypeAsAbsent) {
    Glib::init();
    Glib::VariantBase const marker{g_variant_ref_sink(g_variant_new_parsed(
        "{'id': <7>, 'start': <'1.5'>, 'duration': <true>, 'resolved': <'yes'>, 'more': <()>}"))};
    EXPECT_EQ(readPin(marker), (Pin{"", 0, 0, "", "", "", false}));
}

} // namespace
} // namespace workbench
