#pragma once

#include "Ports/Json.h"

#include <functional>
#include <optional>
#include <string>

namespace fcp {

struct Notification {
    std::string name;
    std::optional<std::string> object; // the sender, where the carrier knows one
    std::optional<Json> userInfo; // an object, when there is one
};

// System-wide notifications between processes. Main thread only, observers included.
class NotificationCenter {
public:
    virtual ~NotificationCenter() = default;

    // Posts without a sender, for immediate delivery. Nothing reports whether anybody heard it: what the
    // carrier cannot take, and what is posted while there is no carrier, is dropped.
    virtual void post(std::string const& name, Json const& userInfo) = 0;

    // For any sender, as long as the process lives; deliberately without a handle.
    virtual void observe(std::string const& name, std::function<void(Notification const&)> observer) = 0;
};

} // namespace fcp
