#pragma once

#include <chrono>
#include <string>

namespace workbench {

// Counts that only grow while a sequence plays.
struct PlayCounts {
    int painted = 0; // pictures on the screen
    int dropped = 0; // by the engine, because they would have come too late
};

// What one stretch of play came to, in a line.
class PlayTally final {
public:
    PlayTally(double speed, PlayCounts const& before)
        : pace(speed)
        , first(before)
        , start(std::chrono::steady_clock::now()) {}

    // "played 10.01 s at 1x: 299 pictures painted, 0 dropped by the engine"
    [[nodiscard]] std::string text(PlayCounts const& after) const;

private:
    double pace;
    PlayCounts first;
    std::chrono::steady_clock::time_point start;
};

} // namespace workbench
