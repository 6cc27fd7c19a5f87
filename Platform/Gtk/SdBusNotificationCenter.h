#pragma once

#include "Platform/Gtk/SdBusConnection.h"
#include "Ports/NotificationCenter.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace fcp {

// Notifications as broadcast signals on the session bus: path /com/zelvix/fcp, the name's last part as the
// member and what stands before it as the interface, the user info as one a{sv}. Our own come back to us.
//
// An observer hears every signal of its name and path, whatever its sender. The bus checks no types: what is
// not exactly an a{sv}, or cannot be read, arrives as a notification without user info. The object is the
// sender's unique name on the bus. A name that makes no valid interface and member is never posted nor heard.
class SdBusNotificationCenter final : public NotificationCenter {
public:
    explicit SdBusNotificationCenter(MainLoop& mainLoop, std::optional<std::string> busAddress = {});
    ~SdBusNotificationCenter() override;

    SdBusNotificationCenter(SdBusNotificationCenter const&) = delete;
    SdBusNotificationCenter& operator=(SdBusNotificationCenter const&) = delete;

    void post(std::string const& name, Json const& userInfo) override;
    void observe(std::string const& name, std::function<void(Notification const&)> observer) override;

private:
    class Topic;

    SdBusConnection connection;
    std::map<std::string, std::shared_ptr<Topic>> topics;
};

} // namespace fcp
