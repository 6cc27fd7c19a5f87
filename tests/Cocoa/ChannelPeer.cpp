#include "Cocoa/RunLoop.h"
#include "Platform/Cocoa/CocoaNotificationCenter.h"

#include <cstdio>
#include <string>
#include <vector>

// A container application in a process of its own, which ends when it is asked to open a link.

namespace {

using fcp::Json;

constexpr auto responseName = "com.zelvix.fcp.containerResponse";

class Container {
public:
    Container() {
        center.observe("com.zelvix.fcp.containerCommand", [this](fcp::Notification const& notification) {
            hear(notification.userInfo.value_or(Json::object()));
        });
    }

    Container(Container const&) = delete;
    Container& operator=(Container const&) = delete;

    [[nodiscard]] bool hasEnded() const { return ended; }

private:
    void hear(Json const& command) {
        auto const name = command.value("command", "");
        if (name == "openURL")
            ended = true;
        else if (name == "selectOutputFolder")
            answerLast(command);
        else if (name == "syncComment")
            keepComment(command);
        else if (name == "getMarkerAtTime" && command.value("threshold", 0.0) >= 0)
            answer(command, comment);
        else if (name == "getMarkerAtTime")
            answerBackwards(command);
        else if (name == "cancelExport")
            answer(command, nullptr);
        else
            answer(command, command); // what was heard
    }

    void answer(Json const& command, Json const& result) {
        center.post(responseName, {{"requestId", command.value("requestId", "")}, {"result", result}});
    }

    // After what other programs may post under the name of an answer.
    void answerLast(Json const& command) {
        center.post(responseName, Json());
        center.post(responseName, {{"requestId", 7}, {"result", "foreign"}});
        center.post(responseName, {{"requestId", "req-0-FFFFFF"}, {"result", "foreign"}});
        answer(command, "/Volumes/Łódź \U0001F3AC/出力");
    }

    void keepComment(Json const& command) {
        comment = command.value("comment", Json());
        answer(command, true);
    }

    // With a threshold of -3 three commands wait for each other, and the last one is answered first.
    void answerBackwards(Json const& command) {
        waiting.push_back(command);
        if (static_cast<double>(waiting.size()) < -command.value("threshold", 0.0))
            return;
        for (; !waiting.empty(); waiting.pop_back())
            answer(waiting.back(), waiting.back());
    }

    fcp::CocoaNotificationCenter center;
    Json comment;
    std::vector<Json> waiting;
    bool ended = false;
};

} // namespace

int main() {
    fcp::test::Pool const pool;
    Container const container;
    std::puts("ready");
    std::fflush(stdout);
    return fcp::test::turnRunLoopUntil([&container] { return container.hasEnded(); }) ? 0 : 1;
}
