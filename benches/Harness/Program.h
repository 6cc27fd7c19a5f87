#pragma once

#include "benches/Harness/Comparison.h"
#include "benches/Harness/Options.h"

#include <functional>
#include <vector>

namespace fcp::bench {

// Measures every side once a round, the warm-up round included, and hands over the values of the rounds that
// count, in the order of the sides. The order of measuring turns round with each round, so that a machine
// that grows slower favours nobody.
template <typename Value>
void alternate(Options const& options, std::vector<std::function<Value()>> const& sides,
               std::function<void(std::vector<Value> const&)> const& take) {
    for (int round = 0; round <= options.rounds; ++round) {
        std::vector<Value> values(sides.size());
        for (std::size_t i = 0; i < sides.size(); ++i) {
            auto const side = round % 2 == 0 ? i : sides.size() - 1 - i;
            values[side] = sides[side]();
        }
        if (round > 0)
            take(values);
    }
}

// Prints measures as they come and keeps the verdict.
class Report {
public:
    void print(Comparison const& comparison);

    [[nodiscard]] bool isWithinBounds() const { return within; }

private:
    bool within = true;
};

// The main function of a measuring program. What goes wrong in `measure` ends it with one line on standard
// error. Exit status: 0, or 1 for a failure, and with --check for a bound that is missed.
[[nodiscard]] int runProgram(Options const& options, std::function<void(Report&)> const& measure);

} // namespace fcp::bench
