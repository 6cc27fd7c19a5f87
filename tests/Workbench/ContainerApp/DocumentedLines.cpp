#include "Workbench/ContainerApp/DocumentedLines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <vector>

namespace workbench {

namespace {

constexpr std::string_view indentation = "    ";

// The lines behind the heading.
std::vector<std::string> pastedLines() {
    auto stream = std::ifstream{CONTAINER_DOCUMENT};
    auto lines = std::vector<std::string>{};
    auto isOurs = false;
    for (auto text = std::string{}; std::getline(stream, text);) {
        isOurs = isOurs || text == "## The workbench's container";
        if (isOurs && text.starts_with(indentation))
            lines.push_back(text.substr(indentation.size()));
    }
    return lines;
}

} // namespace

std::string documentedLine(std::string_view beginning) {
    auto lines = pastedLines();
    std::erase_if(lines, [&](std::string const& each) { return !each.starts_with(beginning); });
    EXPECT_EQ(1U, lines.size()) << beginning;
    return lines.empty() ? "false" : lines.front();
}

std::size_t countDocumentedLines() {
    return pastedLines().size();
}

} // namespace workbench
