#include "Workbench/HostEditor/EveryLabel.h"

#include "Workbench/HostEditor/Timecode.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace workbench {

namespace {

// Shares nothing with what it checks: no division, wheels that carry.
class Counter {
public:
    Counter(int framesInSecond, int skippedAtMinute)
        : labels(framesInSecond)
        , skipped(skippedAtMinute) {}

    void turn() {
        if (++frames < labels)
            return;
        frames = 0;
        if (++seconds < 60)
            return;
        seconds = 0;
        if (++minutes == 60) {
            minutes = 0;
            ++hours;
        }
        if (minutes != 0 && minutes != 10 && minutes != 20 && minutes != 30 && minutes != 40 && minutes != 50)
            frames = skipped;
    }

    [[nodiscard]] bool isBefore(int hour) const { return hours < hour; }

    [[nodiscard]] std::string text() const {
        char all[48];
        std::snprintf(all, sizeof all, "%02d:%02d:%02d%c%0*d", hours, minutes, seconds,
                      skipped > 0 ? ';' : ':', labels > 100 ? 3 : 2, frames);
        return all;
    }

private:
    int labels;
    int skipped;
    int hours = 0;
    int minutes = 0;
    int seconds = 0;
    int frames = 0;
};

int labelsOf(FrameRate rate) {
    return rate.denominator == 1001 ? rate.numerator / 1000 : rate.numerator;
}

int skippedAt(FrameRate rate) {
    auto const isSlowed = rate.denominator == 1001;
    if (isSlowed && rate.numerator == 30000)
        return 2;
    if (isSlowed && rate.numerator == 60000)
        return 4;
    return isSlowed && rate.numerator == 120000 ? 8 : 0;
}

} // namespace

void expectEveryLabelRight(FrameRate rate, int hours) {
    Counter counter{labelsOf(rate), skippedAt(rate)};
    std::int64_t wrong = 0;
    std::int64_t frame = 0;
    for (; counter.isBefore(hours); ++frame, counter.turn()) {
        wrong += timecode(frame, rate) != counter.text();
        wrong += frameOfLabel(labelOf(frame, rate), rate) != frame;
    }
    EXPECT_EQ(wrong, 0) << "of " << frame << " frames at " << rate.numerator << "/" << rate.denominator;
    // The labels keep step with the clock to a few frames, or count each frame.
    auto const seconds = static_cast<double>(frame) * rate.denominator / rate.numerator;
    if (skippedAt(rate) > 0)
        EXPECT_NEAR(seconds, hours * 3600.0, 0.1 * hours);
    else
        EXPECT_EQ(frame, std::int64_t{hours} * 3600 * labelsOf(rate));
}

} // namespace workbench
