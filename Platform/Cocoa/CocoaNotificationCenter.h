#pragma once

#include "Ports/NotificationCenter.h"

namespace fcp {

// The system's distributed notification centre. Our own posts come back to us.
//
// Null is left out of what is posted: the carrier takes property lists alone. An observer hears every sender;
// user info nested too deep arrives as none.
class CocoaNotificationCenter final : public NotificationCenter {
public:
    void post(std::string const& name, Json const& userInfo) override;
    void observe(std::string const& name, std::function<void(Notification const&)> observer) override;
};

} // namespace fcp
