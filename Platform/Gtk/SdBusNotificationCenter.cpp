#include "Platform/Gtk/SdBusNotificationCenter.h"

#include "Platform/Gtk/BusConversions.h"

#include <gio/gio.h>

#include <list>
#include <utility>

namespace fcp {

namespace {

std::optional<SignalMatch> signalFor(std::string const& name) {
    auto const dot = name.rfind('.');
    if (dot == std::string::npos)
        return {};
    SignalMatch signal{"/com/zelvix/fcp", name.substr(0, dot), name.substr(dot + 1)};
    // Not sd-bus's own checks: they let a member begin with a digit, for which the bus cuts us off.
    bool const valid = g_dbus_is_interface_name(signal.interface.c_str()) == TRUE &&
                       g_dbus_is_member_name(signal.member.c_str()) == TRUE;
    return valid ? std::optional(std::move(signal)) : std::nullopt;
}

} // namespace

// The observers of one name: however many they are, a signal is read once.
class SdBusNotificationCenter::Topic {
public:
    explicit Topic(std::string notificationName)
        : name(std::move(notificationName)) {}

    void add(std::function<void(Notification const&)> observer) { observers.push_back(std::move(observer)); }

    void deliver(sd_bus_message& signal) const {
        Notification notification{name, {}, readUserInfo(signal)};
        if (auto const* const sender = sd_bus_message_get_sender(&signal))
            notification.object = sender;
        // An observer may add another one, which a list takes in mid-walk.
        for (auto const& observer : observers)
            observer(notification);
    }

private:
    std::string name;
    std::list<std::function<void(Notification const&)>> observers;
};

SdBusNotificationCenter::SdBusNotificationCenter(MainLoop& mainLoop, std::optional<std::string> busAddress)
    : connection(mainLoop, std::move(busAddress)) {}

SdBusNotificationCenter::~SdBusNotificationCenter() = default;

void SdBusNotificationCenter::post(std::string const& name, Json const& userInfo) {
    auto const names = signalFor(name);
    auto signal = names ? connection.makeSignal(*names) : nullptr;
    if (!signal)
        return;
    if (auto const size = appendUserInfo(*signal, userInfo))
        connection.send(std::move(signal), *size);
}

void SdBusNotificationCenter::observe(std::string const& name,
                                      std::function<void(Notification const&)> observer) {
    auto const names = signalFor(name);
    if (!names)
        return;
    auto& topic = topics[name];
    if (!topic) {
        topic = std::make_shared<Topic>(name);
        connection.subscribe(*names, [topic](sd_bus_message& signal) { topic->deliver(signal); });
    }
    topic->add(std::move(observer));
}

} // namespace fcp
