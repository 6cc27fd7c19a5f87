#include "Workbench/HostEditor/ChannelListener.h"

#include <utility>

namespace workbench {

namespace {

constexpr auto Path = "/com/zelvix/fcp";
constexpr auto Interface = "com.zelvix.fcp";

} // namespace

ChannelListener::ChannelListener(SessionBus& sessionBus, Heard toTell)
    : bus(sessionBus)
    , heard(std::move(toTell)) {
    bus.onConnected(sigc::mem_fun(*this, &ChannelListener::begin));
}

ChannelListener::~ChannelListener() {
    end();
}

void ChannelListener::begin() {
    end();
    followed = bus.connection();
    subscription = followed->signal_subscribe(
        [this](auto const&, auto const&, auto const&, auto const&, Glib::ustring const& member,
               Glib::VariantContainerBase const& arguments) { heard(member.raw(), arguments); },
        {}, Interface, {}, Path);
}

void ChannelListener::end() {
    if (followed && subscription != 0)
        followed->signal_unsubscribe(std::exchange(subscription, 0));
    followed.reset();
}

} // namespace workbench
