#include "Workbench/HostEditor/ChannelListener.h"

#include "Workbench/HostEditor/BusFixture.h"

#include <memory>
#include <utility>
#include <vector>

namespace workbench {
namespace {

class Listener : public BusTest {
protected:
    // As panel and container speak.
    void say(std::string const& member, std::string const& text, char const* path = "/com/zelvix/fcp",
             char const* interface = "com.zelvix.fcp") {
        speaker->emit_signal(
            path, interface, member, {},
            Glib::VariantContainerBase::create_tuple(Glib::Variant<Glib::ustring>::create(text)));
        speaker->flush_sync();
    }

    bool waitFor(std::string const& text) {
        return waitUntil([&] { return !heard.empty() && heard.back().find(text) != std::string::npos; });
    }

    // Until what is said is heard: the listener asks the bus for it in its own time.
    void waitUntilItListens() {
        ASSERT_TRUE(waitUntil([this] {
            say("containerCommand", "are you there");
            return !heard.empty();
        }));
        say("containerCommand", "begin");
        ASSERT_TRUE(waitFor("begin"));
        heard.clear();
    }

    std::vector<std::string> heard;
    SessionBus bus;
    std::unique_ptr<ChannelListener> listener = std::make_unique<ChannelListener>(
        bus, [this](std::string const& member, Glib::VariantContainerBase const& arguments) {
            heard.push_back(member + " " + arguments.print());
        });
    Glib::RefPtr<Gio::DBus::Connection> speaker = stranger();
};

TEST_F(Listener, HearsCommandsAndResponses) {
    waitUntilItListens();
    say("containerCommand", "one");
    say("containerResponse", "two");
    ASSERT_TRUE(waitFor("two"));
    EXPECT_EQ(heard, (std::vector<std::string>{"containerCommand ('one',)", "containerResponse ('two',)"}));
}

TEST_F(Listener, HearsNothingElse) {
    waitUntilItListens();
    say("containerCommand", "elsewhere", "/com/zelvix/other");
    say("containerCommand", "something else", "/com/zelvix/fcp", "com.zelvix.other");
    say("containerResponse", "end");
    ASSERT_TRUE(waitFor("end"));
    EXPECT_EQ(heard.size(), 1U);
}

TEST_F(Listener, IsSilentOnceItIsGone) {
    waitUntilItListens();
    listener.reset();
    say("containerCommand", "late");
    EXPECT_FALSE(isOwned(speaker, "com.zelvix.nobody")); // a round over the bus
    EXPECT_TRUE(heard.empty());
}

TEST_F(Listener, HearsOnWhenTheBusIsBack) {
    waitUntilItListens();
    daemon.kill();
    ASSERT_TRUE(waitUntil([this] { return !bus.connection(); }));
    daemon.start();
    speaker = stranger();
    waitUntilItListens();
}

} // namespace
} // namespace workbench
