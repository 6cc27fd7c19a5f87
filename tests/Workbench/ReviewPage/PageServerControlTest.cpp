#include "Workbench/ReviewPage/PageServerControl.h"

#include "Workbench/ReviewPage/PageServer.h"
#include "Workbench/ReviewPage/RawHttp.h"

#include <giomm.h>
#include <gtest/gtest.h>

#include <chrono>

namespace workbench {
namespace {

// Somebody else on the session bus, who sees of the workbench only what is public.
class Outsider {
public:
    // What the property reads, or none after an error or 10 s.
    std::optional<bool> served() {
        auto const parameters =
            Glib::Variant<std::tuple<Glib::ustring, Glib::ustring>>::create({Interface, "Served"});
        auto const answer = call("Get", parameters);
        if (!answer)
            return std::nullopt;
        Glib::Variant<Glib::VariantBase> boxed;
        answer.get_child(boxed, 0);
        Glib::Variant<bool> value;
        boxed.get_child(value, 0);
        return value.get();
    }

    bool setServed(bool value) {
        auto const boxed = Glib::Variant<Glib::VariantBase>::create(Glib::Variant<bool>::create(value));
        return bool{call("Set", Glib::VariantContainerBase::create_tuple(
                                    {Glib::Variant<Glib::ustring>::create(Interface),
                                     Glib::Variant<Glib::ustring>::create("Served"), boxed}))};
    }

    [[nodiscard]] std::string const& lastError() const { return complaint; }

private:
    static constexpr auto Interface = "com.zelvix.fcp.ReviewPage1";

    Glib::VariantContainerBase call(Glib::ustring const& method,
                                    Glib::VariantContainerBase const& parameters) {
        Glib::RefPtr<Gio::AsyncResult> result;
        bus->call(
            "/com/zelvix/fcp/ReviewPage", "org.freedesktop.DBus.Properties", method, parameters,
            [&](Glib::RefPtr<Gio::AsyncResult> const& ready) { result = ready; }, "com.zelvix.fcp.ReviewPage",
            10000);
        while (!result)
            Glib::MainContext::get_default()->iteration(true);
        try {
            return bus->call_finish(result);
        } catch (Glib::Error const& error) {
            complaint = error.what();
            return {};
        }
    }

    std::string complaint;
    Glib::RefPtr<Gio::DBus::Connection> bus = Gio::DBus::Connection::get_sync(Gio::DBus::BusType::SESSION);
};

class PageServerControlTest : public ::testing::Test {
protected:
    PageServerControlTest() {
        EXPECT_EQ(server.start(), std::nullopt);
        auto const deadline = std::chrono::steady_clock::now() + std::chrono::seconds{10};
        while (!outsider.served() && std::chrono::steady_clock::now() < deadline)
            Glib::MainContext::get_default()->iteration(false);
    }

    PageServer server{0};
    PageServerControl control{server};
    Outsider outsider;
};

TEST_F(PageServerControlTest, TellsWhetherThePageIsServed) {
    EXPECT_EQ(outsider.served(), true);
    server.stop();
    EXPECT_EQ(outsider.served(), false);
}

TEST_F(PageServerControlTest, StopsAndStartsTheServerBeforeItAnswers) {
    EXPECT_TRUE(outsider.setServed(false));
    EXPECT_FALSE(RawHttp{server.port()}.isConnected());
    EXPECT_TRUE(outsider.setServed(true));
    EXPECT_TRUE(RawHttp{server.port()}.isConnected());
}

TEST_F(PageServerControlTest, SaysWhyTheServerCannotStart) {
    ASSERT_TRUE(outsider.setServed(false));
    PageServer intruder{server.port()};
    ASSERT_EQ(intruder.start(), std::nullopt);
    EXPECT_FALSE(outsider.setServed(true));
    EXPECT_NE(outsider.lastError().find("is taken by another program"), std::string::npos)
        << outsider.lastError();
    EXPECT_EQ(outsider.served(), false);
}

TEST_F(PageServerControlTest, GivesTheNameBackWhenItGoes) {
    {
        PageServerControl const second{server};
    }
    EXPECT_EQ(outsider.served(), true) << "the first one still answers";
}

TEST(PageServerControl, DoesNothingWithoutASessionBus) {
    auto const address = Glib::getenv("DBUS_SESSION_BUS_ADDRESS");
    Glib::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/bus");
    PageServer server{0};
    {
        PageServerControl const control{server};
        EXPECT_EQ(server.start(), std::nullopt);
        EXPECT_TRUE(RawHttp{server.port()}.isConnected());
    }
    Glib::setenv("DBUS_SESSION_BUS_ADDRESS", address);
}

} // namespace
} // namespace workbench
