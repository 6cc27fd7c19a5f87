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
#include <filesystem>
#include <fstream>

// What every platform keeps, kept by this one.

namespace fcp::test {

namespace {

namespace fs = std::filesystem;

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

class CocoaFiles {
public:
    CocoaFileManager manager;

    CocoaFiles() {
        auto pattern = (fs::temp_directory_path() / "zelvix-files.XXXXXX").string();
        folder = mkdtemp(pattern.data());
    }

    ~CocoaFiles() { fs::remove_all(folder); }

    [[nodiscard]] std::string make(std::string const& name) const {
        std::ofstream(folder / name).put('x');
        return folder / name;
    }

    static void drop(std::string const& path) { fs::remove(path); }

    fs::path folder;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Cocoa, FileManagerContract, CocoaFiles);

using CocoaFileManagerTest = FileManagerContract<CocoaFiles>;

TEST_F(CocoaFileManagerTest, AFolderCounts) {
    EXPECT_TRUE(files.manager.fileExists(files.folder));
}

TEST_F(CocoaFileManagerTest, ALinkCountsAsLongAsItsTargetIsThere) {
    auto const target = files.make("target");
    fs::create_symlink(target, files.folder / "link");
    EXPECT_TRUE(files.manager.fileExists(files.folder / "link"));
    CocoaFiles::drop(target);
    EXPECT_FALSE(files.manager.fileExists(files.folder / "link"));
}

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
