#pragma once

#include <string>

namespace workbench {

// A review comment's place on the timeline, as the container tells it.
struct Pin {
    std::string id;
    double start = 0; // seconds
    double duration = 0; // seconds; 0 marks a moment
    std::string text;
    std::string author;
    std::string colour; // "#rrggbb", or whatever the page has sent
    bool isResolved = false;

    friend bool operator==(Pin const&, Pin const&) = default;
};

} // namespace workbench
