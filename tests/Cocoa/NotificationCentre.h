#pragma once

#include "Ports/Json.h"

#include <string>
#include <vector>

namespace fcp::test {

// The distributed centre without other processes: what is posted goes through a property list, as between
// processes, and reaches the observers of this one. Main thread only.

// Forgets every observer, so that those of an earlier test hear nothing.
void renewNotificationCentre();

struct Post {
    std::string name;
    bool hasObject = false;
    bool hasUserInfo = false;
    bool isPropertyList = false;
    bool isImmediate = false;
};

// Since the centre was renewed.
[[nodiscard]] std::vector<Post> const& posts();

// Observers that were added without a filter for the sender, since the centre was renewed.
[[nodiscard]] int observersOfAnySender();

// As other programs may post: each is a user info that our own posts never have.
void postWithoutUserInfo(std::string const& name, std::string const& object);
void postOddUserInfo(std::string const& name);

} // namespace fcp::test
