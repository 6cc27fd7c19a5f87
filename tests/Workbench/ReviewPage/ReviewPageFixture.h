#pragma once

#include "Workbench/ReviewPage/PageUnderTest.h"

#include <gtest/gtest.h>

#include <memory>

namespace workbench {

inline Json const Sequence = {
    {"name", "Café 日本 🎬"},        {"duration", 120.12}, {"frameRate", 29.97}, {"width", 0}, {"height", 0},
    {"startTimecode", "00:00:00:00"}};

// A page in the panel, with a host and a container that agree to everything.
class ReviewPageTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { shared = std::make_unique<PageUnderTest>(); }

    static void TearDownTestSuite() { shared.reset(); }

    ReviewPageTest() {
        page.answer("getTimeline", Sequence);
        page.answer("getPlayhead", 1.5);
        for (auto const* command :
             {"seekTo", "syncComment", "deleteComment", "syncAllComments", "startExport"})
            page.answer(command, true);
    }

    ~ReviewPageTest() override { page.reset(); }

    void open() {
        page.load();
        ASSERT_TRUE(
            page.eventually("document.getElementById('sequence-name')?.textContent === 'Café 日本 🎬'"));
    }

    [[nodiscard]] int commentCount() {
        return page.evaluate("return document.querySelectorAll('#comments > li').length;").get<int>();
    }

    [[nodiscard]] bool becomes(std::string const& selector, std::string const& text) {
        return page.eventually("document.querySelector(" + Json(selector).dump() +
                               ")?.textContent === " + Json(text).dump());
    }

    [[nodiscard]] bool isInView(std::string const& selector) {
        return page.eventually(
            "(() => { const row = document.querySelector(" + Json(selector).dump() +
            ")?.getBoundingClientRect(); const list = "
            "document.querySelector('.scroll').getBoundingClientRect();"
            "return row && row.top >= list.top - 1 && row.bottom <= list.bottom + 1; })()");
    }

    inline static std::unique_ptr<PageUnderTest> shared;
    PageUnderTest& page = *shared;
};

constexpr auto State = "#comments > li [data-part=state]";

} // namespace workbench
