#pragma once

#include "Workbench/HostEditor/SessionBus.h"

#include <glibmm/variant.h>

#include <functional>
#include <string>

namespace workbench {

// Hears what panel and container say to each other over the session bus, whoever they are. Main thread.
class ChannelListener final : public sigc::trackable {
public:
    using Heard = std::function<void(std::string const& member, Glib::VariantContainerBase const& arguments)>;

    ChannelListener(SessionBus& sessionBus, Heard toTell); // the bus outlives the listener
    ~ChannelListener();
    ChannelListener(ChannelListener const&) = delete;
    ChannelListener& operator=(ChannelListener const&) = delete;

private:
    void begin();
    void end();

    SessionBus& bus;
    Heard heard;
    Glib::RefPtr<Gio::DBus::Connection> followed; // null: nowhere
    unsigned subscription = 0;
};

} // namespace workbench
