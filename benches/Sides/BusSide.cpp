// The bare bus by itself: reads "trips N" or "comments N" from its standard input, does N round trips one
// after the other, and prints the milliseconds that they took.

#include "benches/Sides/BareBus.h"
#include "benches/Sides/SideOptions.h"

#include <glib.h>

#include <iostream>

namespace {

using namespace fcp::bench;

class Trips {
public:
    [[nodiscard]] double milliseconds(int count, std::vector<Comment> const& comments) {
        auto const began = g_get_monotonic_time();
        for (int i = 0; i < count; ++i) {
            auto const requestId = "req-" + std::to_string(++commands) + "-5C08E1";
            bus.sendCommand(requestId, comments);
            while (answeredId != requestId)
                g_main_context_iteration(nullptr, TRUE);
        }
        return static_cast<double>(g_get_monotonic_time() - began) / 1000;
    }

private:
    int commands = 0;
    std::string answeredId;
    BareBus bus{[this](std::string const& requestId) { answeredId = requestId; }};
};

} // namespace

int main() {
    endWithParent();
    Trips trips;
    auto const comments = makeComments(commentsOfOneMegabyte);
    std::string kind;
    int count = 0;
    while (std::cin >> kind >> count)
        std::cout << trips.milliseconds(count, kind == "comments" ? comments : std::vector<Comment>()) << '\n'
                  << std::flush;
}
