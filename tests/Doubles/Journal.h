#pragma once

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace fcp::test {

// What happened, in order, one line each. Shared by the doubles of a test.
class Journal {
public:
    void note(std::string line) { entries.push_back(std::move(line)); }

    [[nodiscard]] std::vector<std::string> const& lines() const { return entries; }

    // Hands out the lines so far and starts anew.
    std::vector<std::string> take() { return std::exchange(entries, {}); }

    [[nodiscard]] auto count(std::string const& line) const {
        return std::count(entries.begin(), entries.end(), line);
    }

    // The lines that begin with one of the prefixes, in order.
    [[nodiscard]] std::vector<std::string> only(std::vector<std::string> const& prefixes) const {
        std::vector<std::string> found;
        std::ranges::copy_if(entries, std::back_inserter(found), [&prefixes](std::string const& line) {
            return std::ranges::any_of(
                prefixes, [&line](std::string const& prefix) { return line.starts_with(prefix); });
        });
        return found;
    }

private:
    std::vector<std::string> entries;
};

} // namespace fcp::test
