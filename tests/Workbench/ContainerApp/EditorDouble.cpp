#include "Workbench/ContainerApp/EditorDouble.h"

#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include <chrono>

namespace workbench {

namespace {

constexpr char const* editorPath = "/com/zelvix/fcp/Editor";
constexpr char const* editorInterface = "com.zelvix.fcp.Editor1";

int appendSequence(sd_bus_message* message, std::optional<HostSequence> const& sequence) {
    if (!sequence)
        return sd_bus_message_append(message, "a{sv}", 0);
    auto const rate = sequence->rate.value_or(FrameRate{0, 0});
    return sd_bus_message_append(message, "a{sv}", 7, "key", "s", sequence->key.c_str(), "name", "s",
                                 sequence->name.c_str(), "uri", "s", sequence->uri.c_str(), "frameDuration",
                                 "(xx)", rate.denominator, rate.numerator, "durationFrames", "x",
                                 sequence->durationFrames, "start", "x", sequence->firstFrame, "dropFrame",
                                 "b", sequence->dropFrame ? 1 : 0);
}

} // namespace

int EditorDouble::get(sd_bus*, char const*, char const*, char const*, sd_bus_message* reply, void* self,
                      sd_bus_error*) {
    auto& editor = *static_cast<EditorDouble*>(self);
    ++editor.asked;
    return appendSequence(reply, editor.sequence);
}

EditorDouble::EditorDouble(std::optional<HostSequence> theSequence)
    : sequence{std::move(theSequence)} {
    static sd_bus_vtable const table[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_PROPERTY("ActiveSequence", "a{sv}", get, 0, SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE),
        SD_BUS_VTABLE_END};
    auto problem = std::string{};
    bus = Bus::open(problem);
    sd_bus_slot* slot = nullptr;
    EXPECT_GE(sd_bus_add_object_vtable(bus->handle(), &slot, editorPath, editorInterface, table, this), 0);
    object.reset(slot);
    EXPECT_EQ(Bus::Name::Owned, bus->requestName("com.zelvix.fcp.Editor"));
}

void EditorDouble::setSequence(std::optional<HostSequence> theSequence, News news) {
    sequence = std::move(theSequence);
    auto const message = bus->signal(editorPath, "org.freedesktop.DBus.Properties", "PropertiesChanged");
    sd_bus_message_append(message.get(), "s", editorInterface);
    sd_bus_message_open_container(message.get(), 'a', "{sv}");
    if (news == News::WithValue) {
        sd_bus_message_open_container(message.get(), 'e', "sv");
        sd_bus_message_append(message.get(), "s", "ActiveSequence");
        sd_bus_message_open_container(message.get(), 'v', "a{sv}");
        appendSequence(message.get(), sequence);
        sd_bus_message_close_container(message.get());
        sd_bus_message_close_container(message.get());
    }
    sd_bus_message_close_container(message.get());
    sd_bus_message_append(message.get(), "as", news == News::WithValue ? 0 : 1, "ActiveSequence");
    EXPECT_TRUE(bus->send(message));
}

bool EditorDouble::waitFor(std::function<bool()> const& condition) {
    auto const deadline = std::chrono::steady_clock::now() + std::chrono::seconds{20};
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        if (sd_bus_process(bus->handle(), nullptr) == 0)
            sd_bus_wait(bus->handle(), 10'000);
    }
    return true;
}

} // namespace workbench
