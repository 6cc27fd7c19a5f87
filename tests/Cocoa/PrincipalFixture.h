#pragma once

#include "Cocoa/Desktop.h"
#include "Cocoa/HostObjects.h"
#include "Cocoa/NativePage.h"
#include "Cocoa/NotificationCentre.h"
#include "Cocoa/PrincipalPanel.h"
#include "Cocoa/RecordedLog.h"
#include "Cocoa/VirtualTime.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>

namespace fcp::test {

using Lines = std::vector<std::string>;

// A marker file of the modes, for as long as it is kept.
class Marker {
public:
    explicit Marker(std::string markerPath)
        : path(std::move(markerPath)) {
        std::ofstream(path).put('\n');
    }

    ~Marker() { std::filesystem::remove(path); }

    Marker(Marker const&) = delete;
    Marker& operator=(Marker const&) = delete;

private:
    std::string const path;
};

// The extension's principal class over the stand-in system, with a host beside it. One journal notes the
// host, the web views and the log.
class PrincipalFixture : public testing::Test {
protected:
    PrincipalFixture() {
        renewNotificationCentre();
        noteNativePages(&host.journal);
        noteLoggedLines(&host.journal);
        (void)PrincipalPanel::takeSuperclassCalls();
        (void)takeOpenedAddresses();
        host.setDurations({21, 2, CMTime::Valid, 0}, {1001, 30000, CMTime::Valid, 0});
        host.setPlayhead({5, 2, CMTime::Valid, 0});
    }

    ~PrincipalFixture() override {
        panel.reset();
        advanceTime(Seconds(61)); // a request keeps itself and who asked until its time-out
        noteLoggedLines(nullptr);
        noteNativePages(nullptr);
        setKnowsInspection(true);
        EXPECT_EQ(principalPanels(), 0);
        EXPECT_EQ(nativePages(), 0U);
        EXPECT_EQ(liveTimers(), 0U);
    }

    void open() {
        panel = std::make_unique<PrincipalPanel>();
        panel->open();
    }

    [[nodiscard]] static NativePage page() { return NativePage::latest(); }

    [[nodiscard]] Lines logLines() const {
        return journal.only({"info: ", "error: ", "debug: ", "default "});
    }

    HostObjects host;
    Journal& journal = host.journal;
    std::unique_ptr<PrincipalPanel> panel;
};

} // namespace fcp::test
