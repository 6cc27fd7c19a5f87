#include "Cocoa/NotificationCentre.h"
#include "Cocoa/RunLoop.h"
#include "Contract/FileManagerContract.h"
#include "Contract/MainLoopContract.h"
#include "Contract/MediaTimeContract.h"
#include "Contract/NotificationCenterContract.h"
#include "Contract/UrlParserContract.h"
#include "Contract/UuidGeneratorContract.h"
#include "Platform/Cocoa/CocoaFileManager.h"
#include "Platform/Cocoa/CocoaMainLoop.h"
#include "Platform/Cocoa/CocoaMediaTime.h"
#include "Platform/Cocoa/CocoaNotificationCenter.h"
#include "Platform/Cocoa/CocoaUrlParser.h"
#include "Platform/Cocoa/CocoaUuidGenerator.h"

#include <chrono>

// What every platform keeps, kept by this one.

namespace fcp::test {

namespace {

class CocoaHarness {
public:
    CocoaMainLoop loop;

    [[nodiscard]] static Seconds now() { return std::chrono::steady_clock::now().time_since_epoch(); }

    static bool waitFor(Condition const& condition) { return turnRunLoopUntil(condition); }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Cocoa, MainLoopContract, CocoaHarness);

INSTANTIATE_TYPED_TEST_SUITE_P(Cocoa, MediaTimeContract, CocoaMediaTime);

INSTANTIATE_TYPED_TEST_SUITE_P(Cocoa, UuidGeneratorContract, CocoaUuidGenerator);

INSTANTIATE_TYPED_TEST_SUITE_P(Cocoa, UrlParserContract, CocoaUrlParser);

using CocoaFiles = RealFiles<CocoaFileManager>;

INSTANTIATE_TYPED_TEST_SUITE_P(Cocoa, FileManagerContract, CocoaFiles);

INSTANTIATE_TYPED_TEST_SUITE_P(Cocoa, RealFilesContract, CocoaFiles);

Json withoutNulls(Json const& value) {
    if (!value.is_structured())
        return value;
    Json result = value.is_object() ? Json::object() : Json::array();
    for (auto const& [key, member] : value.items()) {
        if (member.is_null())
            continue;
        if (value.is_object())
            result[key] = withoutNulls(member);
        else
            result.push_back(withoutNulls(member));
    }
    return result;
}

class DistributedCentre {
public:
    DistributedCentre() {
        renewNotificationCentre();
        far.observe(commandName, [this](Notification const& notification) { heard.push_back(notification); });
        near.observe("test.echo", [this](Notification const&) { ++echoes; });
    }

    // Nothing may be left in the main queue that would find this fixture gone.
    ~DistributedCentre() { settle(); }

    [[nodiscard]] NotificationCenter& center() { return near; }

    void deliver(std::string const& name, Json const& userInfo) { far.post(name, userInfo); }

    [[nodiscard]] std::vector<Notification> const& heardElsewhere() const { return heard; }

    [[nodiscard]] static bool wait(std::function<bool()> const& condition) {
        return turnRunLoopUntil(condition);
    }

    [[nodiscard]] static Json carried(Json const& userInfo) { return withoutNulls(userInfo); }

    void settle() {
        auto const enough = echoes + 1;
        far.post("test.echo", Json::object());
        EXPECT_TRUE(wait([this, enough] { return echoes == enough; }));
    }

private:
    std::vector<Notification> heard;
    int echoes = 0;
    CocoaNotificationCenter near;
    CocoaNotificationCenter far;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Cocoa, NotificationCenterContract, DistributedCentre);

} // namespace

} // namespace fcp::test
