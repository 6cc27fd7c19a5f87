#pragma once

#include "Doubles/Journal.h"
#include "Ports/NotificationCenter.h"

#include <string>
#include <utility>
#include <vector>

namespace fcp::test {

// Keeps what was posted and delivers what a test hands it.
class FakeNotificationCenter final : public NotificationCenter {
public:
    explicit FakeNotificationCenter(Journal& sharedJournal)
        : journal(sharedJournal) {}

    void post(std::string const& name, Json const& userInfo) override {
        journal.note("post " + name + " " + userInfo.value("command", ""));
        posted.push_back({name, std::nullopt, userInfo});
        if (onPost)
            onPost(posted.back());
    }

    void observe(std::string const& name, std::function<void(Notification const&)> observer) override {
        journal.note("observe " + name);
        observers.emplace_back(name, std::move(observer));
    }

    void deliver(Notification const& notification) const {
        for (auto const& [name, observer] : observers) {
            if (name == notification.name)
                observer(notification);
        }
    }

    // Answers the command posted as number `index`, as a container application does.
    void answer(std::size_t index, Json result) const {
        deliver(
            {"com.zelvix.fcp.containerResponse", std::nullopt,
             Json{{"requestId", posted.at(index).userInfo->at("requestId")}, {"result", std::move(result)}}});
    }

    std::vector<Notification> posted;
    std::vector<std::pair<std::string, std::function<void(Notification const&)>>> observers;
    std::function<void(Notification)> onPost; // runs inside the post

private:
    Journal& journal;
};

} // namespace fcp::test
