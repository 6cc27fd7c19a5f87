#include "Workbench/ContainerApp/WebVttWriter.h"

#include "Workbench/ContainerApp/ExportSamples.h"

#include <gtest/gtest.h>

namespace workbench {

namespace {

constexpr ExportFormat<WebVttWriter> webvtt{"webvtt"};

// The first millisecond in a frame.
std::int64_t millisecondOf(std::int64_t frame, FrameRate rate) {
    auto millisecond = frame * rate.denominator * 1000 / rate.numerator;
    while (millisecond * rate.numerator < frame * rate.denominator * 1000)
        ++millisecond;
    return millisecond;
}

} // namespace

TEST(WebVttWriter, BeginsEveryCueInItsFrame) {
    auto const& frames = telltaleFrames();
    for (auto const& [name, count] : sampleRates()) {
        SCOPED_TRACE(name);
        auto const cues = webvtt.read(contentAt(frames, count))["cues"];
        ASSERT_EQ(frames.size(), cues.size());
        for (std::size_t place = 0; place < frames.size(); ++place) {
            auto const end = place + 1 < frames.size() ? frames[place + 1] : frames[place] + 1;
            EXPECT_EQ(millisecondOf(frames[place], count.rate), cues[place][0]);
            EXPECT_EQ(millisecondOf(end, count.rate), cues[place][1]);
        }
    }
}

TEST(WebVttWriter, EndsACueWithItsRangeOrWhereTheNextOneBegins) {
    auto content = contentAt({25, 50, 100}, pal);
    content.comments[0].duration = 2;
    content.comments[1].duration = 1;
    content.durationFrames = 250;
    EXPECT_EQ((Json{{1000, 2000}, {2000, 3000}, {4000, 10'000}}), webvtt.read(content)["cues"]);
}

TEST(WebVttWriter, WritesOneCueForAFrame) {
    auto content = contentAt({25, 25}, pal);
    content.comments[0].author = "Ana";
    auto const found = webvtt.read(content);
    EXPECT_EQ(Json::array({{1000, 1040}}), found["cues"]);
    EXPECT_EQ(Json{"Ana: Comment 1\nComment 2"}, found["texts"]);
}

TEST(WebVttWriter, WritesNothingButText) {
    auto content = contentAt({0}, pal);
    content.comments[0].text = "<v Ana> & --> \n\nNOTE";
    EXPECT_EQ("WEBVTT\n\n00:00:00.000 --> 00:00:00.040\n&lt;v Ana&gt; &amp; --&gt; NOTE\n",
              webvtt.document(content));
}

TEST(WebVttWriter, CarriesAnyText) {
    auto const found = webvtt.read(hostileContent(pal));
    ASSERT_EQ(hostileTexts().size(), found["cues"].size());
    ASSERT_EQ(hostileTexts().size(), found["texts"].size());
    for (std::size_t place = 0; place < hostileTexts().size(); ++place)
        EXPECT_EQ(Json(hostileTexts()[place].seen), found["texts"][place]);
}

TEST(WebVttWriter, WritesNoCuesAndManyCues) {
    EXPECT_EQ("WEBVTT\n", webvtt.document(contentAt({}, pal)));
    auto const many = webvtt.read(longContent({{30000, 1001}, 0, true}));
    ASSERT_EQ(5000U, many["cues"].size());
    EXPECT_EQ("Comment 5000", many["texts"].back());
}

} // namespace workbench
